// SPDX-License-Identifier: MIT
#include "settings/frm_settings.h"

#include <gtest/gtest.h>

#include <map>

#include "gis/errors.h"
#include "settings/run_state.h"
#include "settings/settings_file.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

struct FrmSettings : testing::Test {
    test::MemoryRun fixture;
    test::TestApplication& application = fixture.application;
    test::MemoryFiles& files = fixture.world.platform.files();
    std::string settingsPath = defaultSettingsPath(application.folder);
    frmSettings form{application};

    FrmSettings() { files.folders["/out"] = true; }
    void fillIn() {
        form.txtWeatherStations.setText("/stations.shp");
        form.txtWeatherData.setText(fixture.folder.file("weather.dbf"));
        form.txtOutput.setText("/out");
        form.txtExtent.setText(fixture.folder.file("domain.shp"));
        form.txtCellSize.setText("400");
        form.txtDEM.setText("/dem");
    }
    bool stored() const { return files.files.contains(settingsPath); }
    RunSettings storedSettings() const { return readSettings(files, settingsPath); }
    std::string lastMessage() const {
        return application.messages().empty() ? "" : application.messages().back();
    }
    void storeAndReload(RunSettings settings) {
        writeSettings(files, settingsPath, settings);
        form.load();
    }
};

TEST_F(FrmSettings, OpensWithDefaults) {
    form.load();
    EXPECT_TRUE(form.optMonthly.value());
    EXPECT_TRUE(form.chkShowMonitor.value());
    EXPECT_EQ(form.cboBeginMonth.text(), "Jan");
    EXPECT_EQ(form.cboEndMonth.text(), "Dec");
    EXPECT_EQ(form.cboBeginMonth.items().size(), 12U);
    EXPECT_EQ(form.cboBeginDay.text(), "1");
    EXPECT_EQ(form.cboEndDay.text(), "31");
    EXPECT_EQ(form.cboEndDay.items().at(9), "10");
    EXPECT_EQ(form.txtYear.text(), "2031");
    EXPECT_EQ(form.cboRefETMethod.text(), "5:  SCS Modified Blaney-Criddle");
    EXPECT_EQ(form.cboDemUnit.text(), "Meters");
    EXPECT_EQ(form.cboSiteUnit.text(), "Meters");
    EXPECT_EQ(form.cboTemperatureUnit.text(), "Degree C");
    EXPECT_EQ(form.cboRadiationUnit.text(), "MJ/m2/Day");
    EXPECT_EQ(form.cboWindUnit.text(), "m/s");
    EXPECT_EQ(form.txtKs.text(), "0.16");
    EXPECT_EQ(form.txtKo.text(), "2.0");
    EXPECT_EQ(form.txtWindSpeed.text(), "2.0");
    EXPECT_TRUE(form.optEDK.value());
    EXPECT_FALSE(form.txtPrism.enabled());
    EXPECT_FALSE(form.cmdSaveAs.enabled());
    EXPECT_FALSE(form.cboZoneField.enabled());
    EXPECT_FALSE(form.cboBeginDay.enabled());
    EXPECT_EQ(form.txtDEM.text(), "");
    EXPECT_TRUE(application.messages().empty());
}

TEST_F(FrmSettings, ListsTheMethods) {
    form.load();
    const std::vector<std::string> methods = {"1:  ASCE Std  Penman-Monteith (Tall Crop: Alfalfa)",
                                              "2:  ASCE Std  Penman-Monteith (Short Crop: Grass)",
                                              "3:  FAO56  Penman-Monteith (Grass)",
                                              "4:  Hargreaves Temperature Method 1985(Grass)",
                                              "5:  SCS Modified Blaney-Criddle",
                                              "6:  Priestley-Taylor"};
    EXPECT_EQ(form.cboRefETMethod.items(), methods);
}

TEST_F(FrmSettings, EveryBrowseButtonOpensItsBrowserAndFillsItsBox) {
    form.load();
    const std::string dbase = "dBase Files (*.DBF)|*.DBF";
    const std::string features = "FeatureDatasets Browser";
    const std::string rasters = "RasterDatasets Browser";
    struct Browse {
        CommandButton& button;
        TextBox& box;
        std::string asks;
    };
    const std::vector<Browse> all = {
        {form.cmdDEM, form.txtDEM, rasters},
        {form.cmdWeatherStations, form.txtWeatherStations, features},
        {form.cmdLandCover, form.txtLandCover, features},
        {form.cmdZones, form.txtZones, features},
        {form.cmdWeatherData, form.txtWeatherData, dbase},
        {form.cmdKc, form.txtKc, dbase},
        {form.cmdOutput, form.txtOutput, "Select a Folder as Output Workspace"},
        {form.cmdExtent, form.txtExtent, features},
        {form.cmdPrism, form.txtPrism, rasters}};
    form.optPRISM.choose();
    std::map<const TextBox*, std::string> expected;
    for (const Browse& browse : all) {
        const std::string chosen = "/chosen/" + browse.box.name();
        application.browsers().answers = {chosen};
        browse.button.click();
        expected[&browse.box] = chosen;
        EXPECT_EQ(application.browsers().asked.back(), browse.asks) << browse.button.name();
        for (const Browse& other : all) EXPECT_EQ(other.box.text(), expected[&other.box]);
    }
}

TEST_F(FrmSettings, ApplyChecksInOrder) {
    form.load();
    const auto refuses = [&](const std::string& message) {
        form.cmdApply.click();
        EXPECT_EQ(lastMessage(), message);
        EXPECT_FALSE(stored());
    };
    refuses("Weather Stations must be set!");
    form.txtWeatherStations.setText(" ");  // a blank is not empty
    refuses("Weather Data must be set!");
    form.txtWeatherData.setText("/w.dbf");
    refuses("Workspace for output must be set!");
    form.txtOutput.setText("/out");
    refuses("Extent provider must be set!");
    form.txtExtent.setText("/domain.shp");
    refuses("Cell Size must be set!");
    form.txtCellSize.setText("100");
    refuses("DEM must be provided!");
    form.txtDEM.setText("/dem");
    form.cboBeginMonth.setText("Dec");
    form.cboEndMonth.setText("Jan");
    refuses("End Month of specified period must be later than beginning month");
    EXPECT_EQ(form.focused(), &form.cboEndMonth);
    form.cboBeginMonth.setText("Jan");
    form.optPRISM.choose();
    refuses("Loaction of the PRISM GRIDs must be specified!");
    EXPECT_EQ(form.focused(), &form.txtPrism);
    form.optEDK.choose();
    form.cmdApply.click();
    EXPECT_TRUE(stored());
    EXPECT_EQ(application.messages().size(), 8U);
}

TEST_F(FrmSettings, ApplyStoresWhatTheControlsShow) {
    form.load();
    fillIn();
    form.cboBeginMonth.setText("Mar");
    form.cboEndMonth.setText("Mar");
    form.cboRefETMethod.select(1);
    form.txtKs.setText("0.17 about");
    form.txtKo.setText("none");
    form.cboSiteUnit.setText("Feet");
    form.cmdGetInfo.click();
    form.cmdApply.click();
    const RunSettings s = storedSettings();
    EXPECT_EQ(s.CellSize, 400);
    EXPECT_EQ(s.RefETMethod, "2");
    EXPECT_EQ(s.PrecipitationMethod, "EDK");
    EXPECT_EQ(s.TimeStep, "Monthly");
    EXPECT_EQ(s.BeginMonth, "Mar");
    EXPECT_EQ(s.Ks, 0.17);
    EXPECT_EQ(s.Ko, 0);
    EXPECT_EQ(s.SiteElevationUnit, "Feet");
    EXPECT_TRUE(s.HasTmax && s.HasTmin && s.HasTdew && s.HasSR && s.HasWS);
    EXPECT_FALSE(s.HasTmean || s.HasRHmax || s.HasRHmin || s.HasRHmean);
    EXPECT_EQ(processState().settings, s);
    EXPECT_TRUE(form.cmdSaveAs.enabled());
}

TEST_F(FrmSettings, ACellSizeThatIsNoNumberStoresNothing) {
    form.load();
    fillIn();
    form.txtCellSize.setText("wide");
    form.cmdApply.click();
    EXPECT_EQ(lastMessage(), "The cell size \"wide\" is not a number");
    EXPECT_FALSE(stored());
}

TEST_F(FrmSettings, AFailedWriteIsShown) {
    form.load();
    fillIn();
    files.writes.failAt(1);
    form.cmdApply.click();
    EXPECT_EQ(application.messages().size(), 1U);
    EXPECT_FALSE(form.cmdSaveAs.enabled());
}

TEST_F(FrmSettings, OkClosesWhateverApplySays) {
    form.load();
    form.cmdOK.click();
    EXPECT_EQ(lastMessage(), "Weather Stations must be set!");
    EXPECT_FALSE(stored());
    EXPECT_FALSE(form.isOpen());
}

TEST_F(FrmSettings, CancelStoresNothing) {
    form.load();
    fillIn();
    form.cmdCancel.click();
    EXPECT_FALSE(stored());
    EXPECT_FALSE(form.isOpen());
}

TEST_F(FrmSettings, ReopensWithWhatWasStored) {
    RunSettings s = fixture.settings;
    s.ZoneField = "NAME";
    s.TimeStep = "Daily";
    s.PrecipitationMethod = "EDK";
    s.PrismGridFolder = "/prism";
    s.BeginDay = "5";
    s.EndDay = "7";
    s.Ks = 0.18;
    storeAndReload(s);
    EXPECT_EQ(form.cboZoneField.text(), "NAME");
    EXPECT_EQ(form.txtCellSize.text(), "400");
    EXPECT_EQ(form.cboRefETMethod.listIndex(), 1);
    EXPECT_TRUE(form.optDaily.value());
    EXPECT_TRUE(form.cboBeginDay.enabled());
    EXPECT_EQ(form.txtPrism.text(), "/prism");
    EXPECT_EQ(form.txtKs.text(), "0.18");
    EXPECT_EQ(form.lblCellsInWidth.text(), "37");
    EXPECT_TRUE(form.chkWS.value());  // the weather table was inspected
    EXPECT_FALSE(form.chkShowMonitor.value());
}

TEST_F(FrmSettings, AStoredPrismRunReopensAsDaily) {
    RunSettings s = fixture.settings;
    s.TimeStep = "Monthly";
    s.PrecipitationMethod = "PRISM_REF";
    storeAndReload(s);
    EXPECT_TRUE(form.optDaily.value());
    EXPECT_FALSE(form.optMonthly.value());
    EXPECT_TRUE(form.optEDK.value());
    EXPECT_FALSE(form.optPRISM.value());
}

TEST_F(FrmSettings, AMethodThatIsNoneFailsTheRestore) {
    for (const char* method : {"7", "x", "", "-1e300"}) {
        RunSettings s = fixture.settings;
        s.RefETMethod = method;
        storeAndReload(s);
        EXPECT_EQ(lastMessage(), "Error with 'Info' file");
        EXPECT_EQ(form.txtDEM.text(), s.DEM);  // restored so far
    }
}

TEST_F(FrmSettings, AShortFileIsAnInfoError) {
    files.files[settingsPath] = "\x05";
    form.load();
    EXPECT_EQ(lastMessage(), "Error with 'Info' file");
    EXPECT_TRUE(form.isOpen());
}

TEST_F(FrmSettings, MethodsFourAndFiveNeedNoEstimates) {
    form.load();
    for (int method = 1; method <= 6; ++method) {
        form.cboRefETMethod.select(method - 1);
        const bool estimates = method != 4 && method != 5;
        EXPECT_EQ(form.txtKs.enabled(), estimates) << method;
        EXPECT_EQ(form.txtKo.enabled(), estimates) << method;
        EXPECT_EQ(form.txtWindSpeed.enabled(), estimates) << method;
        EXPECT_EQ(form.lblKs.enabled(), estimates) << method;
        EXPECT_FALSE(form.chkTmax.enabled());
    }
}

TEST_F(FrmSettings, OptionsEnableWhatTheyNeed) {
    form.load();
    form.optDaily.choose();
    EXPECT_TRUE(form.cboEndDay.enabled());
    form.optMonthly.choose();
    EXPECT_FALSE(form.cboEndDay.enabled());
    form.optPRISM.choose();
    EXPECT_TRUE(form.txtPrism.enabled() && form.cmdPrism.enabled() && form.lblPrism.enabled());
    form.optEDK.choose();
    EXPECT_FALSE(form.txtPrism.enabled() || form.cmdPrism.enabled() || form.lblPrism.enabled());
}

TEST_F(FrmSettings, BrowseButtonsFillTheirBoxes) {
    form.load();
    auto& answers = application.browsers().answers;
    answers = {"/a/dem"};
    form.cmdDEM.click();
    EXPECT_EQ(form.txtDEM.text(), "/a/dem");
    form.cmdDEM.click();  // cancelled
    EXPECT_EQ(form.txtDEM.text(), "/a/dem");
    answers = {"/out2"};
    form.cmdOutput.click();
    EXPECT_EQ(form.txtOutput.text(), "/out2");
    EXPECT_EQ(application.browsers().asked.back(), "Select a Folder as Output Workspace");
    answers = {fixture.folder.file("domain.shp")};
    form.cmdZones.click();
    EXPECT_TRUE(form.cboZoneField.enabled());
    form.setFocus(form.cboZoneField);
    EXPECT_EQ(form.cboZoneField.items(), std::vector<std::string>{"NAME"});
    form.cmdKc.click();
    EXPECT_EQ(application.browsers().asked.back(), "dBase Files (*.DBF)|*.DBF");
}

TEST_F(FrmSettings, TheWeatherBrowserInspectsAlsoAfterACancel) {
    form.load();
    form.cmdWeatherData.click();
    EXPECT_EQ(lastMessage(), "No Metdata info");
    application.browsers().answers = {fixture.folder.file("weather.dbf")};
    form.cmdWeatherData.click();
    EXPECT_TRUE(form.chkTdew.value());
    form.txtWeatherData.enter("/none.dbf");  // cannot be opened: the boxes stay
    EXPECT_TRUE(form.chkTdew.value());
    form.txtWeatherData.enter("");
    EXPECT_EQ(application.messages().size(), 2U);
}

TEST_F(FrmSettings, FieldsInSmallLettersAreTold) {
    application.platform().features().createTable(fixture.folder.file("small.dbf"),
                                                  {{"STN", FieldType::text, 20, 0},
                                                   {"TM_Jan", FieldType::number, 8, 2},
                                                   {"td_Jan", FieldType::number, 8, 2}},
                                                  {{std::string("S1"), 20.0, 10.0}});
    form.load();
    application.prompts().notices.clear();
    form.txtWeatherData.enter(fixture.folder.file("small.dbf"));
    EXPECT_FALSE(form.chkTdew.value());
    EXPECT_EQ(application.prompts().notices,
              std::vector{fixture.folder.file("small.dbf") +
                          ": the table has td_Jan, but the settings take dew point as missing: "
                          "spell the names of its fields with TD_ in capitals"});
}

TEST_F(FrmSettings, ChoosingTheExtentProposesACellSize) {
    form.load();
    fixture.makeDomain({400000, 4500000, 425030, 4510000}, fixture.geometry().crs);
    application.browsers().answers = {fixture.folder.file("domain.shp")};
    form.cmdExtent.click();
    EXPECT_EQ(form.txtCellSize.text(), "40");
    EXPECT_EQ(form.lblCellsInWidth.text(), "625");  // truncated
    EXPECT_EQ(form.lblCellsInHeight.text(), "250");
    EXPECT_EQ(form.lblLeft.text(), "400000");
    EXPECT_EQ(form.lblRight.text(), "425030");
    EXPECT_EQ(form.lblTop.text(), "4510000");
    EXPECT_EQ(form.lblBottom.text(), "4500000");
    form.txtCellSize.setText("4");
    form.txtCellSize.setText("40");
    EXPECT_EQ(form.lblCellsInWidth.text(), "626");  // rounded
    form.txtCellSize.setText("x");
    EXPECT_EQ(form.lblCellsInWidth.text(), "626");  // stays
    application.browsers().answers = {"/none.shp"};
    form.cmdExtent.click();
    EXPECT_EQ(lastMessage(), "Error with Cell Size Setting");
    form.cmdExtent.click();  // cancelled
    EXPECT_EQ(form.txtExtent.text(), "/none.shp");
}

TEST_F(FrmSettings, SaveAsWritesTheAppliedRecord) {
    form.load();
    fillIn();
    form.cmdApply.click();
    form.txtYear.setText("1999");  // not applied
    form.cmdSaveAs.click();        // cancelled
    application.browsers().answers = {"/mine.inf"};
    form.cmdSaveAs.click();
    EXPECT_EQ(readSettings(files, "/mine.inf"), storedSettings());
    EXPECT_EQ(application.browsers().asked.back(), "INFO Files (*.inf)|*.inf");
}

TEST_F(FrmSettings, LoadPreviousFillsTheForm) {
    RunSettings s = fixture.settings;
    s.OutputWorkspace = "/out";
    s.PrecipitationMethod = "PRISM_REF";
    s.PrismGridFolder = "/prism";
    s.TimeStep = "Monthly";
    writeSettings(files, "/old.inf", s);
    form.load();
    application.browsers().answers = {"/old.inf"};
    form.showPage(3);
    form.cmdLoad.click();
    EXPECT_EQ(form.txtDEM.text(), s.DEM);
    EXPECT_TRUE(form.optMonthly.value());  // the precipitation option is not restored
    EXPECT_EQ(form.txtPrism.text(), "");   // nor its folder
    EXPECT_EQ(form.page(), 0);
    EXPECT_FALSE(stored());  // nothing is applied
    EXPECT_TRUE(application.messages().empty());
}

TEST_F(FrmSettings, LoadPreviousWithoutAChoice) {
    form.load();
    form.cmdLoad.click();
    EXPECT_EQ(lastMessage(), "Load Error: No file is selected!");
}

TEST_F(FrmSettings, LoadPreviousOfAMissingFileShowsTheDefaultsOfTwoControls) {
    form.load();
    form.optDaily.choose();
    form.chkShowMonitor.setValue(false);
    application.browsers().answers = {"/gone.inf"};
    form.cmdLoad.click();
    EXPECT_TRUE(form.optMonthly.value());
    EXPECT_TRUE(form.chkShowMonitor.value());
}

TEST_F(FrmSettings, AMissingOutputFolderBecomesTheTemporaryOne) {
    RunSettings s = fixture.settings;
    s.OutputWorkspace = "/deleted";
    writeSettings(files, "/old.inf", s);
    form.load();
    application.browsers().answers = {"/old.inf"};
    form.cmdLoad.click();
    EXPECT_EQ(lastMessage(),
              "Previous folder: /deleted is NOT available any more,\r"
              "Temporary Folder of your system will be used!");
    EXPECT_EQ(form.txtOutput.text(), "/temporary");
    EXPECT_EQ(processState().settings.OutputWorkspace, "/deleted");
    EXPECT_EQ(form.txtDEM.text(), s.DEM);
}

}  // namespace
}  // namespace velmora
