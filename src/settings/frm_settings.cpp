// SPDX-License-Identifier: MIT
#include "settings/frm_settings.h"

#include <array>
#include <exception>

#include "gis/errors.h"
#include "gis/gis_functions.h"
#include "gis/month_names.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "settings/lost_characters.h"
#include "settings/modelling_extent.h"
#include "settings/run_choices.h"
#include "settings/run_state.h"
#include "settings/settings_file.h"
#include "settings/weather_flags.h"
#include "settings/weather_inspection.h"

namespace velmora {

namespace {

constexpr const char* kInfoFilter = "INFO Files (*.inf)|*.inf";
constexpr const char* kDbaseFilter = "dBase Files (*.DBF)|*.DBF";

constexpr std::array<const char*, 6> kMethods = {
    "1:  ASCE Std  Penman-Monteith (Tall Crop: Alfalfa)",
    "2:  ASCE Std  Penman-Monteith (Short Crop: Grass)",
    "3:  FAO56  Penman-Monteith (Grass)",
    "4:  Hargreaves Temperature Method 1985(Grass)",
    "5:  SCS Modified Blaney-Criddle",
    "6:  Priestley-Taylor"};

void fill(ListBox& list, const std::vector<std::string>& items, int shown) {
    list.clear();
    for (const std::string& item : items) list.addItem(item);
    list.select(shown);
}

}  // namespace

frmSettings::frmSettings(IApplication& application)
    : Form("frmSettings", "General Settings"), application_(application) {
    addControls();
    bindHandlers();
}

void frmSettings::addControls() {
    for (Control* control : std::initializer_list<Control*>{&txtDEM,
                                                            &cmdDEM,
                                                            &txtWeatherStations,
                                                            &cmdWeatherStations,
                                                            &txtWeatherData,
                                                            &cmdWeatherData,
                                                            &txtKc,
                                                            &cmdKc,
                                                            &txtLandCover,
                                                            &cmdLandCover,
                                                            &txtZones,
                                                            &cmdZones,
                                                            &cboZoneField,
                                                            &txtOutput,
                                                            &cmdOutput,
                                                            &txtExtent,
                                                            &cmdExtent,
                                                            &txtCellSize,
                                                            &lblCellsInWidth,
                                                            &lblCellsInHeight,
                                                            &lblLeft,
                                                            &lblRight,
                                                            &lblTop,
                                                            &lblBottom,
                                                            &optMonthly,
                                                            &optDaily,
                                                            &txtYear,
                                                            &cboBeginMonth,
                                                            &cboEndMonth,
                                                            &cboBeginDay,
                                                            &cboEndDay,
                                                            &cboRefETMethod,
                                                            &cboSiteUnit,
                                                            &cboDemUnit,
                                                            &cboTemperatureUnit,
                                                            &cboRadiationUnit,
                                                            &cboWindUnit,
                                                            &chkTmax,
                                                            &chkTmin,
                                                            &chkTmean,
                                                            &chkTdew,
                                                            &chkRHmean,
                                                            &chkRHmax,
                                                            &chkRHmin,
                                                            &chkSR,
                                                            &chkWS,
                                                            &cmdGetInfo,
                                                            &lblWindSpeed,
                                                            &txtWindSpeed,
                                                            &lblKs,
                                                            &txtKs,
                                                            &lblKo,
                                                            &txtKo,
                                                            &optEDK,
                                                            &optPRISM,
                                                            &lblPrism,
                                                            &txtPrism,
                                                            &cmdPrism,
                                                            &chkShowMonitor,
                                                            &cmdOK,
                                                            &cmdApply,
                                                            &cmdCancel,
                                                            &cmdSaveAs,
                                                            &cmdLoad}) {
        add(*control);
    }
    OptionButton::group({&optMonthly, &optDaily});
    OptionButton::group({&optEDK, &optPRISM});
}

void frmSettings::bindHandlers() {
    auto& browsers = application_.browsers();
    cmdDEM.onClick = [&] { chooseInto(txtDEM, BrowseRasterDataset(browsers)); };
    cmdWeatherStations.onClick = [&] {
        chooseInto(txtWeatherStations, BrowseFeatureDataset(browsers));
    };
    cmdLandCover.onClick = [&] { chooseInto(txtLandCover, BrowseFeatureDataset(browsers)); };
    cmdZones.onClick = [&] {
        chooseInto(txtZones, BrowseFeatureDataset(browsers));
        cboZoneField.setEnabled(true);
    };
    cmdWeatherData.onClick = [&] {
        chooseInto(txtWeatherData, browsers.openFile(kDbaseFilter));
        inspectWeather();
    };
    cmdKc.onClick = [&] { chooseInto(txtKc, browsers.openFile(kDbaseFilter)); };
    cmdOutput.onClick = [&] {
        chooseInto(txtOutput, BrowseForFolder(browsers, "Select a Folder as Output Workspace"));
    };
    cmdPrism.onClick = [&] { chooseInto(txtPrism, BrowseRasterDataset(browsers)); };
    cmdExtent.onClick = [this] { chooseExtent(); };
    txtCellSize.onChange = [this] { editCellSize(); };
    txtWeatherData.onLeave = [this] { inspectWeather(); };
    cmdGetInfo.onClick = [this] { inspectWeather(); };
    cboZoneField.onFocus = [this] { listZoneFields(); };
    cboRefETMethod.onClick = [this] { changeMethod(); };
    optDaily.onClick = [this] {
        cboBeginDay.setEnabled(true);
        cboEndDay.setEnabled(true);
    };
    optMonthly.onClick = [this] {
        cboBeginDay.setEnabled(false);
        cboEndDay.setEnabled(false);
    };
    optPRISM.onClick = [this] { enablePrism(true); };
    optEDK.onClick = [this] { enablePrism(false); };
    cmdApply.onClick = [this] { apply(); };
    cmdOK.onClick = [this] {
        apply();
        close();
    };
    cmdCancel.onClick = [this] { close(); };
    cmdSaveAs.onClick = [this] { saveAs(); };
    cmdLoad.onClick = [this] { loadPrevious(); };
}

std::vector<CheckBox*> frmSettings::parameterBoxes() {
    // In the order of WeatherParameter.
    return {&chkTmax, &chkTmin,  &chkTdew,  &chkTmean, &chkSR,
            &chkWS,   &chkRHmax, &chkRHmin, &chkRHmean};
}

void frmSettings::load() {
    Form::load();
    showDefaults();
    IFileSystem& files = application_.platform().files();
    if (files.fileExists(defaultSettingsPath(application_.extensionFolder()))) {
        restoreFromDefaultFile();
    } else {
        optMonthly.choose();
        chkShowMonitor.setValue(true);
    }
    if (!txtWeatherData.text().empty()) inspectWeather();
    showPage(0);
    cboZoneField.setEnabled(false);
    cmdSaveAs.setEnabled(false);
}

void frmSettings::showDefaults() {
    for (TextBox* box : {&txtDEM, &txtWeatherStations, &txtWeatherData, &txtKc, &txtLandCover,
                         &txtZones, &txtOutput, &txtExtent, &txtCellSize, &txtPrism}) {
        box->setText({});
    }
    for (Label* label :
         {&lblCellsInWidth, &lblCellsInHeight, &lblLeft, &lblRight, &lblTop, &lblBottom}) {
        label->setText({});
    }
    cboZoneField.clear();
    for (CheckBox* box : parameterBoxes()) box->setValue(false);
    chkShowMonitor.setValue(false);
    for (OptionButton* option : {&optMonthly, &optDaily}) option->clear();
    for (ListBox* days : {&cboBeginDay, &cboEndDay}) days->setEnabled(true);
    optEDK.choose();

    std::vector<std::string> months;
    for (int m = 1; m <= 12; ++m) months.push_back(GetMonthName(m));
    fill(cboBeginMonth, months, 0);
    fill(cboEndMonth, months, 11);
    std::vector<std::string> days;
    for (int d = 1; d <= 31; ++d) days.push_back(formatPlaces(d, 0));
    fill(cboBeginDay, days, 0);
    fill(cboEndDay, days, 30);
    txtYear.setText(std::to_string(application_.platform().clock().currentYear()));
    fill(cboRefETMethod, {kMethods.begin(), kMethods.end()}, 4);
    const std::vector<std::string> lengths = {textOf(LengthUnit::metres), textOf(LengthUnit::feet)};
    fill(cboSiteUnit, lengths, 0);
    fill(cboDemUnit, lengths, 0);
    fill(cboTemperatureUnit,
         {textOf(TemperatureUnit::celsius), textOf(TemperatureUnit::fahrenheit)}, 0);
    fill(cboRadiationUnit, {"MJ/m2/Day"}, 0);
    fill(cboWindUnit, {"m/s"}, 0);
    txtWindSpeed.setText("2.0");
    txtKs.setText("0.16");
    txtKo.setText("2.0");
}

// A cancelled choice leaves the text as it was.
void frmSettings::chooseInto(TextBox& box, const std::string& chosen) {
    if (!chosen.empty()) box.setText(chosen);
}

void frmSettings::chooseExtent() {
    const std::string chosen = BrowseFeatureDataset(application_.browsers());
    if (chosen.empty()) return;
    txtExtent.setText(chosen);
    try {
        const Envelope extent = extentOf(application_.platform().features(), chosen);
        const float cellSize = proposedCellSize(extent);
        const CellCounts counts = truncatedCounts(extent, static_cast<double>(cellSize));
        txtCellSize.setText(singleText(cellSize));
        lblCellsInWidth.setText(std::to_string(counts.width));
        lblCellsInHeight.setText(std::to_string(counts.height));
        lblLeft.setText(numberText(extent.xMin));
        lblRight.setText(numberText(extent.xMax));
        lblTop.setText(numberText(extent.yMax));
        lblBottom.setText(numberText(extent.yMin));
    } catch (const PlatformError&) {
        application_.prompts().message("Error with Cell Size Setting");
    }
}

// The counts stay as they were when the provider cannot be opened or the text makes no count.
void frmSettings::editCellSize() {
    if (txtExtent.text().empty() || txtCellSize.text().empty()) return;
    try {
        const Envelope extent = extentOf(application_.platform().features(), txtExtent.text());
        if (const auto counts = roundedCounts(extent, lenientNumber(txtCellSize.text()))) {
            lblCellsInWidth.setText(std::to_string(counts->width));
            lblCellsInHeight.setText(std::to_string(counts->height));
        }
    } catch (const PlatformError&) {
        return;
    }
}

void frmSettings::listZoneFields() {
    const std::string shown = cboZoneField.text();
    try {
        const auto zones = application_.platform().features().openFeatureClass(txtZones.text());
        cboZoneField.clear();
        for (const Field& field : zones->fields()) cboZoneField.addItem(field.name);
    } catch (const PlatformError& e) {
        application_.prompts().message(e.what());
    }
    cboZoneField.setText(shown);
}

void frmSettings::changeMethod() {
    for (CheckBox* box : parameterBoxes()) box->setEnabled(false);
    const double method = lenientNumber(cboRefETMethod.text().substr(0, 1));
    const bool estimates = !(method > 3 && method < 6);
    for (Control* control : std::initializer_list<Control*>{&lblWindSpeed, &txtWindSpeed, &lblKs,
                                                            &txtKs, &lblKo, &txtKo}) {
        control->setEnabled(estimates);
    }
}

void frmSettings::enablePrism(bool enabled) {
    lblPrism.setEnabled(enabled);
    txtPrism.setEnabled(enabled);
    cmdPrism.setEnabled(enabled);
}

void frmSettings::inspectWeather() {
    if (txtWeatherData.text().empty()) {
        application_.prompts().message("No Metdata info");
        return;
    }
    try {
        const auto names =
            weatherFieldNames(application_.platform().connections(), txtWeatherData.text());
        const auto boxes = parameterBoxes();
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            const bool held = holdsParameter(names, static_cast<WeatherParameter>(i));
            boxes[i]->setValue(held);
            if (!held) boxes[i]->setEnabled(false);
        }
        for (const std::string& text : fieldsInOtherCase(names)) {
            application_.prompts().notice(txtWeatherData.text() + ": " + text);
        }
    } catch (const PlatformError& e) {  // the boxes stay as they are
        application_.prompts().notice("The weather table " + txtWeatherData.text() +
                                      " cannot be opened, so the ticks of its parameters stay as "
                                      "they are: " +
                                      e.what());
    }
}

void frmSettings::restoreFromDefaultFile() {
    try {
        RunSettings& settings = processState().settings;
        settings = readSettings(application_.platform().files(),
                                defaultSettingsPath(application_.extensionFolder()));
        restore(settings);
        restorePrecipitation(settings);
    } catch (const std::exception&) {
        application_.prompts().message("Error with 'Info' file");
    }
}

// All that both ways of reading a record show, the precipitation option and its folder aside.
void frmSettings::restore(const RunSettings& settings) {
    txtDEM.setText(settings.DEM);
    txtWeatherStations.setText(settings.WeatherStations);
    txtWeatherData.setText(settings.WeatherData);
    txtKc.setText(settings.KcTable);
    txtLandCover.setText(settings.LandCover);
    txtZones.setText(settings.Zones);
    cboZoneField.setText(settings.ZoneField);
    txtOutput.setText(settings.OutputWorkspace);
    txtExtent.setText(settings.ExtentProvider);
    txtCellSize.setText(numberText(settings.CellSize));
    cboRefETMethod.select(settings.methodNumber() - 1);  // fails for a method that is none
    chkShowMonitor.setValue(settings.ShowMonitor);
    if (timeStep(settings) == TimeStep::monthly) optMonthly.choose();
    if (timeStep(settings) == TimeStep::daily) optDaily.choose();
    txtYear.setText(settings.Year);
    cboBeginMonth.setText(settings.BeginMonth);
    cboEndMonth.setText(settings.EndMonth);
    cboBeginDay.setText(settings.BeginDay);
    cboEndDay.setText(settings.EndDay);
    // What was stored stays where the weather table cannot be inspected.
    const std::array<bool, kWeatherParameters> held = {
        settings.HasTmax, settings.HasTmin,  settings.HasTdew,  settings.HasTmean, settings.HasSR,
        settings.HasWS,   settings.HasRHmax, settings.HasRHmin, settings.HasRHmean};
    const auto boxes = parameterBoxes();
    for (std::size_t i = 0; i < boxes.size(); ++i) boxes[i]->setValue(held[i]);
    cboDemUnit.setText(settings.DemUnit);
    cboSiteUnit.setText(settings.SiteElevationUnit);
    cboTemperatureUnit.setText(settings.TemperatureUnit);
    txtWindSpeed.setText(numberText(settings.EstimatedWindSpeed));
    txtKs.setText(numberText(settings.Ks));
    txtKo.setText(numberText(settings.Ko));
}

// A stored "PRISM_REF" switches the time step to "Daily" and leaves the detrended option on; kept
// on purpose, Apply then stores what the form shows.
void frmSettings::restorePrecipitation(const RunSettings& settings) {
    const PrecipitationMethod method = precipitationMethod(settings);
    if (method == PrecipitationMethod::detrended) optEDK.choose();
    if (method == PrecipitationMethod::reference) optDaily.choose();
    txtPrism.setText(settings.PrismGridFolder);
}

void frmSettings::loadPrevious() {
    IFileSystem& files = application_.platform().files();
    const std::string path = application_.browsers().openFile(kInfoFilter);
    if (path.empty()) {
        application_.prompts().message("Load Error: No file is selected!");
        return;
    }
    if (files.fileExists(path)) {
        try {
            RunSettings& settings = processState().settings;
            settings = readSettings(files, path);
            restore(settings);
            if (!files.folderExists(settings.OutputWorkspace)) {
                application_.prompts().message("Previous folder: " + settings.OutputWorkspace +
                                               " is NOT available any more,\r"
                                               "Temporary Folder of your system will be used!");
                txtOutput.setText(files.specialFolder(SpecialFolder::temporary));
            }
        } catch (const std::exception&) {
            application_.prompts().message("Error with 'Info' file");
        }
    } else {
        optMonthly.choose();
        chkShowMonitor.setValue(true);
    }
    if (!txtWeatherData.text().empty()) inspectWeather();
    showPage(0);
    cboZoneField.setEnabled(false);
}

void frmSettings::saveAs() {
    const std::string path = application_.browsers().saveFile(kInfoFilter);
    if (path.empty()) return;
    try {
        writeSettings(application_.platform().files(), path, applied_);
    } catch (const PlatformError& e) {
        application_.prompts().message(e.what());
    }
}

bool frmSettings::checksPass() {
    IPrompts& prompts = application_.prompts();
    const std::array<std::pair<const TextBox*, const char*>, 6> needed = {{
        {&txtWeatherStations, "Weather Stations must be set!"},
        {&txtWeatherData, "Weather Data must be set!"},
        {&txtOutput, "Workspace for output must be set!"},
        {&txtExtent, "Extent provider must be set!"},
        {&txtCellSize, "Cell Size must be set!"},
        {&txtDEM, "DEM must be provided!"},
    }};
    for (const auto& [box, message] : needed) {
        if (!box->text().empty()) continue;
        prompts.message(message);
        return false;
    }
    if (GetMonthNumber(cboEndMonth.text()) < GetMonthNumber(cboBeginMonth.text())) {
        prompts.message("End Month of specified period must be later than beginning month");
        setFocus(cboEndMonth);
        return false;
    }
    if (optPRISM.value() && txtPrism.text().empty()) {
        prompts.message("Loaction of the PRISM GRIDs must be specified!");
        setFocus(txtPrism);
        return false;
    }
    return true;
}

RunSettings frmSettings::collected() const {
    const auto cellSize = strictNumber(txtCellSize.text());
    if (!cellSize) {
        throw PlatformError("The cell size \"" + txtCellSize.text() + "\" is not a number");
    }
    RunSettings settings;
    settings.DEM = txtDEM.text();
    settings.WeatherStations = txtWeatherStations.text();
    settings.WeatherData = txtWeatherData.text();
    settings.KcTable = txtKc.text();
    settings.LandCover = txtLandCover.text();
    settings.Zones = txtZones.text();
    settings.ZoneField = cboZoneField.text();
    settings.PrismGridFolder = txtPrism.text();
    settings.OutputWorkspace = txtOutput.text();
    settings.ExtentProvider = txtExtent.text();
    settings.CellSize = *cellSize;
    settings.RefETMethod = cboRefETMethod.text().substr(0, 1);
    if (optEDK.value()) settings.PrecipitationMethod = textOf(PrecipitationMethod::detrended);
    if (optPRISM.value()) settings.PrecipitationMethod = textOf(PrecipitationMethod::reference);
    if (optMonthly.value()) settings.TimeStep = textOf(TimeStep::monthly);
    if (optDaily.value()) settings.TimeStep = textOf(TimeStep::daily);
    settings.Year = txtYear.text();
    settings.BeginMonth = cboBeginMonth.text();
    settings.EndMonth = cboEndMonth.text();
    settings.BeginDay = cboBeginDay.text();
    settings.EndDay = cboEndDay.text();
    settings.DemUnit = cboDemUnit.text();
    settings.SiteElevationUnit = cboSiteUnit.text();
    settings.TemperatureUnit = cboTemperatureUnit.text();
    settings.ShowMonitor = chkShowMonitor.value();
    settings.HasTmax = chkTmax.value();
    settings.HasTmin = chkTmin.value();
    settings.HasTmean = chkTmean.value();
    settings.HasTdew = chkTdew.value();
    settings.HasRHmean = chkRHmean.value();
    settings.HasRHmax = chkRHmax.value();
    settings.HasRHmin = chkRHmin.value();
    settings.HasSR = chkSR.value();
    settings.HasWS = chkWS.value();
    settings.Ks = lenientNumber(txtKs.text());
    settings.Ko = lenientNumber(txtKo.text());
    settings.EstimatedWindSpeed = lenientNumber(txtWindSpeed.text());
    return settings;
}

void frmSettings::apply() {
    if (!checksPass()) return;
    try {
        IFileSystem& files = application_.platform().files();
        const RunSettings settings = collected();
        files.createFolder(application_.extensionFolder());
        writeSettings(files, defaultSettingsPath(application_.extensionFolder()), settings);
        processState().settings = settings;
        applied_ = settings;
        cmdSaveAs.setEnabled(true);
        for (const LostText& lost : textsToBeLost(settings)) {
            application_.prompts().notice(lost.field + ": " + lost.text);
        }
    } catch (const PlatformError& e) {
        application_.prompts().message(e.what());
    }
}

}  // namespace velmora
