// SPDX-License-Identifier: MIT
// The General Settings form. Its controls are its only state; settings exist for the model steps
// only through the default settings file that Apply writes.
#pragma once

#include <string>
#include <vector>

#include "forms/form.h"
#include "gis/application.h"
#include "settings/run_settings.h"
#include "settings/settings_fields.h"

namespace velmora {

class frmSettings : public Form {
  public:
    // The application must outlive the form.
    explicit frmSettings(IApplication& application);

    void load() override;

    // "Input Data"
    TextBox txtDEM{*this, "txtDEM"};
    CommandButton cmdDEM{*this, "cmdDEM", "..."};
    TextBox txtWeatherStations{*this, "txtWeatherStations"};
    CommandButton cmdWeatherStations{*this, "cmdWeatherStations", "..."};
    TextBox txtWeatherData{*this, "txtWeatherData"};
    CommandButton cmdWeatherData{*this, "cmdWeatherData", "..."};
    TextBox txtKc{*this, "txtKc"};
    CommandButton cmdKc{*this, "cmdKc", "..."};
    TextBox txtLandCover{*this, "txtLandCover"};
    CommandButton cmdLandCover{*this, "cmdLandCover", "..."};
    TextBox txtZones{*this, "txtZones"};
    CommandButton cmdZones{*this, "cmdZones", "..."};
    ListBox cboZoneField{*this, "cboZoneField"};
    // "Output Workspace"
    TextBox txtOutput{*this, "txtOutput"};
    CommandButton cmdOutput{*this, "cmdOutput", "..."};
    // "Extent and Cell Size"
    TextBox txtExtent{*this, "txtExtent"};
    CommandButton cmdExtent{*this, "cmdExtent", "..."};
    TextBox txtCellSize{*this, "txtCellSize"};
    Label lblCellsInWidth{*this, "lblCellsInWidth"};
    Label lblCellsInHeight{*this, "lblCellsInHeight"};
    Label lblLeft{*this, "lblLeft"};
    Label lblRight{*this, "lblRight"};
    Label lblTop{*this, "lblTop"};
    Label lblBottom{*this, "lblBottom"};
    // "Time Step and  Period"
    OptionButton optMonthly{*this, "optMonthly", "Monthly"};
    OptionButton optDaily{*this, "optDaily", "Daily"};
    TextBox txtYear{*this, "txtYear"};
    ListBox cboBeginMonth{*this, "cboBeginMonth"};
    ListBox cboEndMonth{*this, "cboEndMonth"};
    ListBox cboBeginDay{*this, "cboBeginDay"};
    ListBox cboEndDay{*this, "cboEndDay"};
    // "Methods for Calculating Reference ET"
    ListBox cboRefETMethod{*this, "cboRefETMethod"};
    // "Measurement Units"
    ListBox cboSiteUnit{*this, "cboSiteUnit"};
    ListBox cboDemUnit{*this, "cboDemUnit"};
    ListBox cboTemperatureUnit{*this, "cboTemperatureUnit"};
    ListBox cboRadiationUnit{*this, "cboRadiationUnit"};
    ListBox cboWindUnit{*this, "cboWindUnit"};
    // "Meteorological Data Information"
    CheckBox chkTmax{*this, "chkTmax", "Maximum Temperature"};
    CheckBox chkTmin{*this, "chkTmin", "Minimum Temperature"};
    CheckBox chkTmean{*this, "chkTmean", "Mean Temperature"};
    CheckBox chkTdew{*this, "chkTdew", "Dewpoint Temperature"};
    CheckBox chkRHmean{*this, "chkRHmean", "Mean RH"};
    CheckBox chkRHmax{*this, "chkRHmax", "Maximum RH"};
    CheckBox chkRHmin{*this, "chkRHmin", "Minimum RH"};
    CheckBox chkSR{*this, "chkSR", "Solar Radiation"};
    CheckBox chkWS{*this, "chkWS", "Wind Speed"};
    CommandButton cmdGetInfo{*this, "cmdGetInfo", "Get Info"};
    Label lblWindSpeed{*this, "lblWindSpeed", "Estimated Wind Speed at 2m:"};
    TextBox txtWindSpeed{*this, "txtWindSpeed"};
    Label lblKs{*this, "lblKs", "(Tmax-Tmin)^0.5 x Ra x"};
    TextBox txtKs{*this, "txtKs"};
    Label lblKo{*this, "lblKo", "Estimated as :Tmin - Ko"};
    TextBox txtKo{*this, "txtKo"};
    // "Precipitation Interpolation"
    OptionButton optEDK{*this, "optEDK", "Use elevationally detrended method"};
    OptionButton optPRISM{*this, "optPRISM", "Use PRISM precipitation GRID as reference"};
    Label lblPrism{*this, "lblPrism", "Location of  the reference GRIDs:"};
    TextBox txtPrism{*this, "txtPrism"};
    CommandButton cmdPrism{*this, "cmdPrism", "..."};
    // "Performance Control"
    CheckBox chkShowMonitor{*this, "chkShowMonitor", "Show Progress  Monitor"};
    CommandButton cmdOK{*this, "cmdOK", "OK"};
    CommandButton cmdApply{*this, "cmdApply", "Apply"};
    CommandButton cmdCancel{*this, "cmdCancel", "Cancel"};
    CommandButton cmdSaveAs{*this, "cmdSaveAs", "Save As"};
    CommandButton cmdLoad{*this, "cmdLoad", "Load Previous Settings"};

  private:
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
    void show(const SettingsField& field, const RunSettings& settings);
    void restorePrecipitation(const RunSettings& settings);
    void loadPrevious();
    void saveAs();
    void apply();
    bool checksPass();
    RunSettings collected() const;
    void take(const SettingsField& field, std::string& value) const;
    void take(const SettingsField& field, double& value) const;
    void take(const SettingsField& field, bool& value) const;

    std::vector<CheckBox*> parameterBoxes();

    IApplication& application_;
    RunSettings applied_;  // what "Save As" writes: a file loaded since takes part only by Apply
};

}  // namespace velmora
