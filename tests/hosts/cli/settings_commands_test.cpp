// SPDX-License-Identifier: MIT
// The settings commands as a user types them: what is not named stays, also where the form that
// they open would change it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "platform/files/file_system.h"
#include "settings/settings_fields.h"
#include "settings/settings_file.h"
#include "tests/support/command_fixture.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

struct SettingsCommands : test::Command {
    std::string settingsPath = folder + "/config/velmora/Zav.inf";
    platform::FileSystem files;
    std::string output;

    // Runs the program and keeps what it prints; its status.
    int run(const std::string& arguments) {
        const test::Outcome outcome = Command::run(arguments);
        output = outcome.output;
        return outcome.status;
    }
    // A PRISM run with every field set, put into force.
    RunSettings store() {
        RunSettings s = fixture.settings;
        s.ZoneField = "HUC";
        s.TimeStep = "Monthly";
        s.PrecipitationMethod = "PRISM_REF";
        s.BeginDay = "4";
        s.EndDay = "28";
        s.ShowMonitor = true;
        s.SiteElevationUnit = "Feet";
        s.Ks = 0.173;
        store(s);
        return s;
    }
    void store(const RunSettings& s) {
        fs::create_directories(fs::path(settingsPath).parent_path());
        fs::remove(settingsPath);
        writeSettings(files, settingsPath, s);
    }
    RunSettings stored() const { return readSettings(files, settingsPath); }
    std::string bytes() const { return test::contentOf(settingsPath); }
};

TEST_F(SettingsCommands, ApplyChangesOnlyWhatIsNamed) {
    RunSettings s = store();
    ASSERT_EQ(run("settings apply CellSize=300"), 0) << output;
    s.CellSize = 300;
    EXPECT_EQ(stored(), s);
    EXPECT_EQ(output, "CellSize: 400 -> 300\nSettings are applied: " + settingsPath + "\n");
    ASSERT_EQ(run("settings apply ShowMonitor=false EndMonth=Aug"), 0) << output;
    s.ShowMonitor = false;
    s.EndMonth = "Aug";
    EXPECT_EQ(stored(), s);
    ASSERT_EQ(run("settings apply PrecipitationMethod=EDK PrismGridFolder="), 0) << output;
    s.PrecipitationMethod = "EDK";
    s.PrismGridFolder = "";
    EXPECT_EQ(stored(), s);
    ASSERT_EQ(run("settings apply TimeStep=Daily RefETMethod=4"), 0) << output;
    s.TimeStep = "Daily";
    s.RefETMethod = "4";
    EXPECT_EQ(stored(), s);
    ASSERT_EQ(run("--json settings apply Year=1999"), 0) << output;
    const auto told = nlohmann::json::parse(output);
    EXPECT_EQ(told.at("file"), settingsPath);
    EXPECT_EQ(told.at("changes").size(), 1U);
    EXPECT_EQ(told.at("changes").at(0).at("after"), "1999");
}

// The checks of Apply see the method that is stored.
TEST_F(SettingsCommands, APrismRunKeepsItsFolder) {
    const RunSettings s = store();
    EXPECT_EQ(run("settings apply PrismGridFolder="), 1);
    EXPECT_THAT(output, HasSubstr("Loaction of the PRISM GRIDs must be specified!"));
    EXPECT_EQ(stored(), s);
}

// Values that the form has no text or choice for.
TEST_F(SettingsCommands, ApplyKeepsFieldsThatTheFormCannotShow) {
    RunSettings s = store();
    s.TimeStep = s.PrecipitationMethod = "";
    s.HasRHmean = true;
    s.BeginMonth = "jan";
    store(s);
    ASSERT_EQ(run("settings apply CellSize=300"), 0) << output;
    s.CellSize = 300;
    EXPECT_EQ(stored(), s);
}

TEST_F(SettingsCommands, FlagsStayUntilAWeatherTableIsNamed) {
    RunSettings s = store();
    ASSERT_EQ(run("settings apply HasSR=false"), 0) << output;
    EXPECT_FALSE(stored().HasSR);
    ASSERT_EQ(run("settings apply CellSize=300"), 0) << output;
    EXPECT_FALSE(stored().HasSR);
    ASSERT_EQ(run("settings apply WeatherData=weather.dbf HasWS=no"), 0) << output;
    EXPECT_TRUE(stored().HasSR);
    EXPECT_FALSE(stored().HasWS);
    EXPECT_THAT(output, HasSubstr("HasSR: false -> true\n"));
    EXPECT_EQ(run("settings apply --help"), 0);
    EXPECT_THAT(output, HasSubstr("HasTmax"));
    EXPECT_THAT(output, HasSubstr("found when WeatherData is named"));
}

TEST_F(SettingsCommands, ApplyRefusesAWeatherTableThatCannotBeRead) {
    store();
    const std::string before = bytes();
    fs::rename(folder + "/weather.dbf", folder + "/away.dbf");
    EXPECT_EQ(run("settings apply Year=2024"), 1);
    EXPECT_THAT(output, HasSubstr("velmora: WeatherData: the table " + folder +
                                  "/weather.dbf cannot be opened, so nothing is applied: "));
    EXPECT_EQ(bytes(), before);
    fs::rename(folder + "/away.dbf", folder + "/weather.dbf");
    EXPECT_EQ(run("settings apply WeatherData=nowhere.dbf"), 1);
    EXPECT_EQ(bytes(), before);
}

TEST_F(SettingsCommands, ApplyRefusesAnExtentProviderThatCannotServe) {
    const std::string inputs =
        "settings apply DEM=dem WeatherStations=stations.shp WeatherData=weather.dbf "
        "OutputWorkspace=out ";
    EXPECT_EQ(run(inputs + "ExtentProvider=none.shp"), 1);
    EXPECT_THAT(output, Not(HasSubstr("is proposed")));
    EXPECT_THAT(output, HasSubstr("none.shp"));
    auto& platform = fixture.application.platform();
    fixture.makeDomain({-112, 43, -111, 44}, platform.spatialReferences().createGeographic(4326));
    EXPECT_EQ(run(inputs + "ExtentProvider=domain.shp"), 1);
    EXPECT_THAT(output, Not(HasSubstr("is proposed")));
    EXPECT_THAT(output, HasSubstr("domain is in degrees"));
    EXPECT_FALSE(fs::exists(settingsPath));
}

TEST_F(SettingsCommands, DamagedSettingsAreNotHalfApplied) {
    RunSettings s = store();
    const std::string good = bytes();
    s.RefETMethod = "9";
    s.TimeStep = "Monthly";
    store(s);
    const std::string foreign = bytes();
    for (const char* command : {"settings apply CellSize=200", "settings save-as mine.inf"}) {
        EXPECT_EQ(run(command), 1);
        EXPECT_THAT(output, HasSubstr("The field RefETMethod holds \"9\""));
        EXPECT_THAT(output, HasSubstr("delete the file and apply all settings anew"));
        EXPECT_EQ(bytes(), foreign);
    }
    test::write(settingsPath, good.substr(0, 100));
    for (const char* command : {"settings apply CellSize=200", "settings save-as mine.inf"}) {
        EXPECT_EQ(run(command), 1);
        EXPECT_THAT(output, HasSubstr("ends inside the field"));
        EXPECT_EQ(bytes(), good.substr(0, 100));
    }
    EXPECT_FALSE(fs::exists(folder + "/mine.inf"));
}

TEST_F(SettingsCommands, SaveAsCopiesTheRecordInForce) {
    EXPECT_EQ(run("settings save-as mine.inf"), 1);
    EXPECT_THAT(output, HasSubstr("Run Settings First,Please!"));
    store();
    const std::string before = bytes();
    fs::rename(folder + "/weather.dbf", folder + "/away.dbf");  // takes no part
    ASSERT_EQ(run("settings save-as mine.inf"), 0) << output;
    EXPECT_EQ(bytes(), before);
    EXPECT_EQ(test::contentOf(folder + "/mine.inf"), before);
}

TEST_F(SettingsCommands, LoadPutsExactlyTheRecordOfTheFileInForce) {
    const RunSettings wanted = store();
    fs::rename(settingsPath, folder + "/prism.inf");
    ASSERT_EQ(run("settings load prism.inf"), 0) << output;  // nothing was in force
    EXPECT_EQ(bytes(), test::contentOf(folder + "/prism.inf"));
    RunSettings other = wanted;
    other.PrecipitationMethod = "EDK";
    other.PrismGridFolder = "";
    other.CellSize = 900;
    other.HasTmean = true;
    store(other);
    ASSERT_EQ(run("settings load prism.inf"), 0) << output;
    EXPECT_EQ(stored(), wanted);
    EXPECT_THAT(output, HasSubstr("PrismGridFolder: \"\" -> " + wanted.PrismGridFolder +
                                  "\n"
                                  "CellSize: 900 -> 400\n"
                                  "PrecipitationMethod: EDK -> PRISM_REF\n"
                                  "HasTmean: true -> false\n"));
}

TEST_F(SettingsCommands, LoadRefusesARecordWhoseOutputFolderIsGone) {
    store();
    const std::string before = bytes();
    RunSettings other = fixture.settings;
    other.OutputWorkspace = folder + "/gone";
    writeSettings(files, folder + "/other.inf", other);
    EXPECT_EQ(run("settings load other.inf"), 1);
    EXPECT_THAT(output, HasSubstr("the output folder \"" + folder + "/gone\" does not exist"));
    EXPECT_EQ(bytes(), before);
    other = fixture.settings;
    other.RefETMethod = "x";
    writeSettings(files, folder + "/foreign.inf", other);
    EXPECT_EQ(run("settings load foreign.inf"), 1);
    EXPECT_THAT(output, HasSubstr("The field RefETMethod holds \"x\""));
    EXPECT_EQ(bytes(), before);
}

TEST_F(SettingsCommands, CharactersThatTheFileCannotHoldAreTold) {
    store();
    const std::string own = folder + "/\u0412\u043E\u0434\u0430";
    fs::create_directory(own);
    EXPECT_EQ(run("settings apply OutputWorkspace='" + own + "'"), 1);
    EXPECT_THAT(output, HasSubstr("note: OutputWorkspace: the settings file cannot hold "
                                  "\"\u0412\u043E\u0434\u0430\""));
    EXPECT_EQ(stored().OutputWorkspace, folder + "/????");
    EXPECT_EQ(run("check"), 1);
    EXPECT_THAT(output, HasSubstr("error: OutputWorkspace: \"" + folder +
                                  "/????\" does not exist: the settings file stores ?"));
    EXPECT_THAT(output, Not(HasSubstr("create it first")));
    EXPECT_EQ(run("run refet"), 1);
    EXPECT_THAT(output, HasSubstr("note: OutputWorkspace: \"" + folder + "/????\""));
    EXPECT_EQ(run("settings apply OutputWorkspace=out"), 0) << output;
}

TEST_F(SettingsCommands, AnEmptyOutputFolderIsNamedAsTheSetting) {
    RunSettings s = store();
    s.OutputWorkspace = "";
    store(s);
    EXPECT_EQ(run("run ppt"), 1);
    EXPECT_THAT(output, HasSubstr("The setting OutputWorkspace is empty"));
    EXPECT_EQ(run("check"), 1);
    EXPECT_THAT(output, HasSubstr("error: OutputWorkspace: is empty"));
}

}  // namespace
}  // namespace velmora
