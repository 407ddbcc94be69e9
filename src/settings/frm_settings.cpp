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
#include "settings/stored_settings.h"
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
    OptionButton::group({&optMonthly, &optDaily});
    OptionButton::group({&optEDK, &optPRISM});
    bindHandlers();
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
    restoreFromDefaultFile();
    if (!txtWeatherData.text().empty()) inspectWeather();
    showPage(0);
    cboZoneField.setEnabled(false);
    cmdSaveAs.setEnabled(false);
}

void frmSettings::showDefaults() {
    for (const SettingsField& field : settingsFields()) {
        if (field.kind == FieldKind::path) control<TextBox>(std::string(field.control)).setText({});
    }
    txtCellSize.setText({});
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

// Where there is no record.
void frmSettings::showFirstChoices() {
    optMonthly.choose();
    chkShowMonitor.setValue(true);
}

void frmSettings::restoreFromDefaultFile() {
    try {
        const auto stored =
            storedSettings(application_.platform().files(), application_.extensionFolder());
        if (!stored) {
            showFirstChoices();
            return;
        }
        processState().settings = *stored;
        restore(*stored);
        restorePrecipitation(*stored);
    } catch (const std::exception&) {
        application_.prompts().message("Error with 'Info' file");
    }
}

// All that both ways of reading a record show, the precipitation option and its folder aside. The
// ticks of the parameters stay as stored where the weather table cannot be inspected.
void frmSettings::restore(const RunSettings& settings) {
    for (const SettingsField& field : settingsFields()) {
        const bool aside = field.name == "PrecipitationMethod" || field.name == "PrismGridFolder";
        if (!aside) show(field, settings);
    }
}

void frmSettings::show(const SettingsField& field, const RunSettings& settings) {
    const std::string text = settingsText(settings, field);
    const std::string name(field.control);
    if (const FieldOption* option = optionOf(field, text)) {
        control<OptionButton>(std::string(option->control)).choose();
    } else if (field.kind == FieldKind::flag) {
        control<CheckBox>(name).setValue(text == "true");
    } else if (name == cboRefETMethod.name()) {
        cboRefETMethod.select(settings.methodNumber() - 1);  // fails for a method that is none
    } else if (field.options.empty()) {
        control<Control>(name).setText(text);
    }
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
        showFirstChoices();
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
    for (const SettingsField& field : settingsFields()) {
        std::visit([&](auto member) { take(field, settings.*member); }, field.member);
    }
    settings.CellSize = *cellSize;
    return settings;
}

void frmSettings::take(const SettingsField& field, std::string& value) const {
    for (const FieldOption& option : field.options) {
        if (control<OptionButton>(std::string(option.control)).value()) value = option.value;
    }
    if (field.options.empty()) value = control<Control>(std::string(field.control)).text();
    if (field.control == cboRefETMethod.name()) value = value.substr(0, 1);  // its number
}

void frmSettings::take(const SettingsField& field, double& value) const {
    value = lenientNumber(control<TextBox>(std::string(field.control)).text());
}

void frmSettings::take(const SettingsField& field, bool& value) const {
    value = control<CheckBox>(std::string(field.control)).value();
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
