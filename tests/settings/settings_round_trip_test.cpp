// SPDX-License-Identifier: MIT
// Every field of a record finds its way from the settings file through the form back into the file.
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "settings/frm_settings.h"
#include "settings/run_state.h"
#include "settings/settings_fields.h"
#include "settings/settings_file.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

struct Trip : testing::Test {
    test::MemoryRun fixture;
    test::TestApplication& application = fixture.application;
    test::MemoryFiles& files = fixture.world.platform.files();
    std::string settingsPath = defaultSettingsPath(application.folder);
    frmSettings form{application};

    Trip() { files.folders["/out"] = true; }
};

// Thirty-five values, no two texts or numbers alike, none that a fresh form shows. No weather table
// can be inspected, so that the flags are those of the file.
RunSettings distinct() {
    RunSettings s;
    s.DEM = "/in/dem";
    s.WeatherStations = "/in/stations.shp";
    s.WeatherData = "/none/weather.dbf";
    s.KcTable = "/in/kc.dbf";
    s.LandCover = "/in/fields.shp";
    s.Zones = "/in/zones.shp";
    s.ZoneField = "HUC";
    s.PrismGridFolder = "/ref/ppt01";
    s.OutputWorkspace = "/out";
    s.ExtentProvider = "/none/domain.shp";
    s.CellSize = 123.5;
    s.RefETMethod = "3";
    s.PrecipitationMethod = "EDK";
    s.TimeStep = "Daily";
    s.Year = "1987";
    s.BeginMonth = "Mar";
    s.EndMonth = "Oct";
    s.BeginDay = "4";
    s.EndDay = "28";
    s.DemUnit = "Feet";
    s.SiteElevationUnit = "Ells";  // an unknown unit is shown and kept
    s.TemperatureUnit = "Degree F";
    s.Ks = 0.173;
    s.Ko = 1.25;
    s.EstimatedWindSpeed = 3.5;
    return s;
}

// The flags one at a time, and none.
struct RoundTrip : Trip, testing::WithParamInterface<int> {
    static RunSettings record() {
        RunSettings s = distinct();
        int number = 0;
        for (const SettingsField& field : settingsFields()) {
            if (const auto* flag = std::get_if<bool RunSettings::*>(&field.member)) {
                s.*(*flag) = number++ == GetParam();
            }
        }
        return s;
    }
};

TEST_P(RoundTrip, FromTheFileThroughTheFormIntoTheFile) {
    const std::string bytes = settingsRecord(record());
    files.files[settingsPath] = bytes;
    form.load();
    form.cmdApply.click();
    EXPECT_TRUE(form.cmdSaveAs.enabled());
    EXPECT_EQ(files.files[settingsPath], bytes);
    EXPECT_EQ(readSettings(files, settingsPath), record());
    EXPECT_EQ(processState().settings, record());
    EXPECT_TRUE(application.messages().empty());
}

INSTANTIATE_TEST_SUITE_P(Flags, RoundTrip, testing::Range(0, 11));

TEST_F(Trip, TheOtherChoicesSurviveToo) {
    RunSettings s = distinct();
    s.TimeStep = "Monthly";
    s.DemUnit = "Meters";
    s.SiteElevationUnit = "Feet";
    s.TemperatureUnit = "Degree C";
    for (const char* method : {"1", "2", "4", "5", "6"}) {
        s.RefETMethod = method;
        files.files[settingsPath] = settingsRecord(s);
        form.load();
        form.cmdApply.click();
        EXPECT_EQ(readSettings(files, settingsPath), s) << method;
    }
}

// Both ways of a field might be wrong together, so the controls are looked at by themselves.
TEST_F(Trip, EveryControlShowsItsField) {
    RunSettings s = distinct();
    s.HasTmean = s.HasRHmax = s.ShowMonitor = true;
    files.files[settingsPath] = settingsRecord(s);
    form.showPage(2);
    form.load();
    EXPECT_EQ(form.page(), 0);
    const std::vector<std::pair<const Control*, std::string>> shown = {
        {&form.txtDEM, "/in/dem"},
        {&form.txtWeatherStations, "/in/stations.shp"},
        {&form.txtWeatherData, "/none/weather.dbf"},
        {&form.txtKc, "/in/kc.dbf"},
        {&form.txtLandCover, "/in/fields.shp"},
        {&form.txtZones, "/in/zones.shp"},
        {&form.cboZoneField, "HUC"},
        {&form.txtPrism, "/ref/ppt01"},
        {&form.txtOutput, "/out"},
        {&form.txtExtent, "/none/domain.shp"},
        {&form.txtCellSize, "123.5"},
        {&form.cboRefETMethod, "3:  FAO56  Penman-Monteith (Grass)"},
        {&form.txtYear, "1987"},
        {&form.cboBeginMonth, "Mar"},
        {&form.cboEndMonth, "Oct"},
        {&form.cboBeginDay, "4"},
        {&form.cboEndDay, "28"},
        {&form.cboDemUnit, "Feet"},
        {&form.cboSiteUnit, "Ells"},
        {&form.cboTemperatureUnit, "Degree F"},
        {&form.txtKs, "0.173"},
        {&form.txtKo, "1.25"},
        {&form.txtWindSpeed, "3.5"},
    };
    for (const auto& [control, text] : shown) EXPECT_EQ(control->text(), text) << control->name();
    EXPECT_TRUE(form.optDaily.value() && form.optEDK.value() && form.chkShowMonitor.value());
    EXPECT_TRUE(form.chkTmean.value() && form.chkRHmax.value());
    EXPECT_FALSE(form.chkTmax.value() || form.chkRHmin.value() || form.chkSR.value());
}

TEST_F(Trip, ALoadedFileIsAppliedButForItsPrecipitation) {
    const RunSettings s = distinct();
    writeSettings(files, "/other.inf", s);
    form.load();
    form.cboZoneField.setEnabled(true);
    application.browsers().answers = {"/other.inf"};
    form.cmdLoad.click();
    EXPECT_FALSE(form.cboZoneField.enabled());
    form.cmdApply.click();
    RunSettings expected = s;
    expected.PrismGridFolder = "";
    EXPECT_EQ(readSettings(files, settingsPath), expected);
}

TEST_F(Trip, LoadingInspectsTheWeatherTable) {
    RunSettings s = distinct();
    s.WeatherData = fixture.folder.file("weather.dbf");
    s.HasTmean = true;
    writeSettings(files, "/other.inf", s);
    form.load();
    application.browsers().answers = {"/other.inf"};
    form.cmdLoad.click();
    EXPECT_TRUE(form.chkTmax.value() && form.chkWS.value());
    EXPECT_FALSE(form.chkTmean.value());
    EXPECT_TRUE(application.prompts().notices.empty());
}

TEST_F(Trip, SaveAsWritesWhatWasAppliedAlsoAfterALoad) {
    files.files[settingsPath] = settingsRecord(distinct());
    RunSettings other = distinct();
    other.Year = "1955";
    writeSettings(files, "/other.inf", other);
    form.load();
    form.txtYear.setText("2031");
    form.cmdApply.click();
    application.browsers().answers = {"/other.inf", "/mine.inf", "/mine2.inf"};
    form.cmdLoad.click();
    form.cmdSaveAs.click();
    EXPECT_EQ(readSettings(files, "/mine.inf").Year, "2031");
    form.cmdApply.click();
    form.cmdSaveAs.click();
    EXPECT_EQ(readSettings(files, "/mine2.inf").Year, "1955");
}

TEST_F(Trip, ReopeningForgetsTheTimeStepOfTheLastOpening) {
    RunSettings s = distinct();
    for (const char* first : {"Daily", "Monthly"}) {
        s.TimeStep = first;
        files.files[settingsPath] = settingsRecord(s);
        form.load();
        s.TimeStep = "Weekly";
        files.files[settingsPath] = settingsRecord(s);
        form.load();
        EXPECT_FALSE(form.optDaily.value() || form.optMonthly.value()) << first;
        EXPECT_TRUE(form.cboBeginDay.enabled() && form.cboEndDay.enabled());
    }
}

TEST_F(Trip, AWeatherTableThatCannotBeOpenedIsToldAndKeepsTheFlags) {
    RunSettings s = distinct();
    s.HasSR = s.HasWS = true;
    files.files[settingsPath] = settingsRecord(s);
    form.load();
    const auto& notices = application.prompts().notices;
    ASSERT_EQ(notices.size(), 1U);
    EXPECT_NE(notices[0].find("/none/weather.dbf cannot be opened"), std::string::npos);
    EXPECT_TRUE(form.chkSR.value() && form.chkWS.value());
    form.cmdGetInfo.click();
    EXPECT_EQ(notices.size(), 2U);
    EXPECT_TRUE(form.chkSR.value());
    EXPECT_TRUE(application.messages().empty());
}

TEST_F(Trip, CharactersThatTheFileCannotHoldAreTold) {
    files.files[settingsPath] = settingsRecord(distinct());
    form.load();
    form.txtOutput.setText("/\u00C9t\u00E9/\u6C34/\u6C34\u0141");
    form.txtYear.setText("1990?");
    form.cmdApply.click();
    EXPECT_EQ(readSettings(files, settingsPath).OutputWorkspace, "/\u00C9t\u00E9/?/??");
    const std::string& notice = application.prompts().notices.back();
    EXPECT_EQ(application.prompts().notices.size(), 2U);  // the weather table is the first
    EXPECT_NE(notice.find("OutputWorkspace: the settings file cannot hold \"\u6C34\u0141\""),
              std::string::npos)
        << notice;
    EXPECT_NE(notice.find("stored as \"/\u00C9t\u00E9/?/??\""), std::string::npos);
}

}  // namespace
}  // namespace velmora
