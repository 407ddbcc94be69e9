// SPDX-License-Identifier: MIT
// The General Settings form. Its controls are its only state; settings exist for the model steps
// only through the default settings file that Apply writes.
#pragma once

#include <string>
#include <vector>

#include "forms/form.h"
#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

class frmSettings : public Form {
  public:
    // The application must outlive the form.
    explicit frmSettings(IApplication& application);

    void load() override;

    // "Input Data"
    TextBox txtDEM{"txtDEM"};
    CommandButton cmdDEM{"cmdDEM", "..."};
    TextBox txtWeatherStations{"txtWeatherStations"};
    CommandButton cmdWeatherStations{"cmdWeatherStations", "..."};
    TextBox txtWeatherData{"txtWeatherData"};
    CommandButton cmdWeatherData{"cmdWeatherData", "..."};
    TextBox txtKc{"txtKc"};
    CommandButton cmdKc{"cmdKc", "..."};
    TextBox txtLandCover{"txtLandCover"};
    CommandButton cmdLandCover{"cmdLandCover", "..."};
    TextBox txtZones{"txtZones"};
    CommandButton cmdZones{"cmdZones", "..."};
    ListBox cboZoneField{"cboZoneField"};
    // "Output Workspace"
    TextBox txtOutput{"txtOutput"};
    CommandButton cmdOutput{"cmdOutput", "..."};
    // "Extent and Cell Size"
    TextBox txtExtent{"txtExtent"};
    CommandButton cmdExtent{"cmdExtent", "..."};
    TextBox txtCellSize{"txtCellSize"};
    Label lblCellsInWidth{"lblCellsInWidth"};
    Label lblCellsInHeight{"lblCellsInHeight"};
    Label lblLeft{"lblLeft"};
    Label lblRight{"lblRight"};
    Label lblTop{"lblTop"};
    Label lblBottom{"lblBottom"};
    // "Time Step and  Period"
    OptionButton optMonthly{"optMonthly", "Monthly"};
    OptionButton optDaily{"optDaily", "Daily"};
    TextBox txtYear{"txtYear"};
    ListBox cboBeginMonth{"cboBeginMonth"};
    ListBox cboEndMonth{"cboEndMonth"};
    ListBox cboBeginDay{"cboBeginDay"};
    ListBox cboEndDay{"cboEndDay"};
    // "Methods for Calculating Reference ET"
    ListBox cboRefETMethod{"cboRefETMethod"};
    // "Measurement Units"
    ListBox cboSiteUnit{"cboSiteUnit"};
    ListBox cboDemUnit{"cboDemUnit"};
    ListBox cboTemperatureUnit{"cboTemperatureUnit"};
    ListBox cboRadiationUnit{"cboRadiationUnit"};
    ListBox cboWindUnit{"cboWindUnit"};
    // "Meteorological Data Information"
    CheckBox chkTmax{"chkTmax", "Maximum Temperature"};
    CheckBox chkTmin{"chkTmin", "Minimum Temperature"};
    CheckBox chkTmean{"chkTmean", "Mean Temperature"};
    CheckBox chkTdew{"chkTdew", "Dewpoint Temperature"};
    CheckBox chkRHmean{"chkRHmean", "Mean RH"};
    CheckBox chkRHmax{"chkRHmax", "Maximum RH"};
    CheckBox chkRHmin{"chkRHmin", "Minimum RH"};
    CheckBox chkSR{"chkSR", "Solar Radiation"};
    CheckBox chkWS{"chkWS", "Wind Speed"};
    CommandButton cmdGetInfo{"cmdGetInfo", "Get Info"};
    Label lblWindSpeed{"lblWindSpeed", "Estimated Wind Speed at 2m:"};
    TextBox txtWindSpeed{"txtWindSpeed"};
    Label lblKs{"lblKs", "(Tmax-Tmin)^0.5 x Ra x"};
    TextBox txtKs{"txtKs"};
    Label lblKo{"lblKo", "Estimated as :Tmin - Ko"};
    TextBox txtKo{"txtKo"};
    // "Precipitation Interpolation"
    OptionButton optEDK{"optEDK", "Use elevationally detrended method"};
    OptionButton optPRISM{"optPRISM", "Use PRISM precipitation GRID as reference"};
    Label lblPrism{"lblPrism", "Location of  the reference GRIDs:"};
    TextBox txtPrism{"txtPrism"};
    CommandButton cmdPrism{"cmdPrism", "..."};
    // "Performance Control"
    CheckBox chkShowMonitor{"chkShowMonitor", "Show Progress  Monitor"};
    CommandButton cmdOK{"cmdOK", "OK"};
    CommandButton cmdApply{"cmdApply", "Apply"};
    CommandButton cmdCancel{"cmdCancel", "Cancel"};
    CommandButton cmdSaveAs{"cmdSaveAs", "Save As"};
    CommandButton cmdLoad{"cmdLoad", "Load Previous Settings"};

  private:
    void addControls();
    void bindHandlers();
    void showDefaults();

    void chooseInto(TextBox& box, const std::string& chosen);
    void chooseExtent();
    void editCellSize();
    void listZoneFields();
    void changeMethod();
    void enablePrism(bool enabled);
    void inspectWeather();

    void showFirstChoices();
    void restoreFromDefaultFile();
    void restore(const RunSettings& settings);
    void restorePrecipitation(const RunSettings& settings);
    void loadPrevious();
    void saveAs();
    void apply();
    bool checksPass();
    RunSettings collected() const;

    std::vector<CheckBox*> parameterBoxes();

    IApplication& application_;
    RunSettings applied_;  // what "Save As" writes: a file loaded since takes part only by Apply
};

}  // namespace velmora
