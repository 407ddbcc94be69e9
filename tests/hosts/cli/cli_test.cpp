// SPDX-License-Identifier: MIT
// The command `velmora` as a user types it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <vector>

#include "gis/zonal_tables.h"
#include "hosts/cli/command_line.h"
#include "hosts/cli/man_page.h"
#include "hosts/results/grid_picture.h"
#include "settings/settings_fields.h"
#include "tests/support/command_fixture.h"

namespace velmora {
namespace {

using test::Command;
using test::CropCommand;
using test::Outcome;
using testing::HasSubstr;
using testing::Not;

TEST_F(Command, RunsReferenceEt) {
    EXPECT_EQ(run("run refet").status, 1);
    EXPECT_THAT(run("run refet").output, HasSubstr("message: Run Settings First,Please!"));
    ASSERT_EQ(apply().status, 0);
    const Outcome ran = run("run refet");
    EXPECT_EQ(ran.status, 0) << ran.output;
    EXPECT_THAT(ran.output, HasSubstr("use ASCE Std  Penman-Monteith (Short Crop: Grass) ..."));
    EXPECT_THAT(ran.output, HasSubstr("message: Time for estimating referece ET: "));
    EXPECT_TRUE(fixture.hasOutput("RefET_Jun_2"));
    EXPECT_THAT(run("--quiet run refet").output, HasSubstr("\nmessage: Time"));
    const auto info = nlohmann::json::parse(run("--json grid info RefET_Jun_2").output);
    EXPECT_EQ(info.at("columns"), 37);
    EXPECT_EQ(info.at("crs"), "NAD83 / UTM zone 12N (EPSG:26912)");
    const auto stats =
        nlohmann::json::parse(run("--json grid stats RefET_Jun_2 out/RefET_Jul_2").output);
    EXPECT_EQ(stats.at(0).at("cells"), 37 * 21 - 1);
    EXPECT_GT(stats.at(1).at("mean").get<double>(), 3);
}

TEST_F(Command, WithoutSettingsOneMessageIsGiven) {
    for (const char* command : {"settings show", "settings save-as mine.inf", "check"}) {
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.status, 1) << command;
        EXPECT_THAT(outcome.output,
                    testing::AllOf(HasSubstr("message: Run Settings First,Please!"),
                                   HasSubstr("Zav.inf yet: velmora settings apply makes it")))
            << command;
    }
}

TEST_F(Command, RunsPrecipitation) {
    fixture.makeWeather(test::RunFixture::stations(), test::RunFixture::usualWeather,
                        {"TM_", "TN_", "P_"});
    ASSERT_EQ(apply("PrecipitationMethod=EDK").status, 0);
    const Outcome ran = run("run ppt");
    EXPECT_EQ(ran.status, 0) << ran.output;
    EXPECT_EQ(ran.output,
              "message: Using EDK to interpolate precipitation...\n"
              "Precipitation of Jun ...\nmessage: PPT Calculation for Jun is Over!\n"
              "Precipitation of Jul ...\nmessage: PPT Calculation for Jul is Over!\n"
              "The step has ended.\n");
    EXPECT_TRUE(fixture.hasOutput("PPT_Jul"));
    EXPECT_FALSE(std::filesystem::exists(folder + "/out/PPT_diagnostics.csv"));
    const Outcome watched = run("--progress json run ppt");
    EXPECT_EQ(watched.status, 0);
    std::vector<std::string> kinds;
    double fraction = 0;
    std::istringstream lines(watched.output);
    for (std::string line; std::getline(lines, line);) {
        const auto told = nlohmann::json::parse(line);
        kinds.push_back(told.at("kind"));
        if (kinds.back() == "progress") fraction = told.at("fraction");
    }
    EXPECT_EQ(kinds.front(), "begin");
    EXPECT_EQ(kinds.back(), "end");
    EXPECT_THAT(kinds, testing::IsSupersetOf({"doing", "message"}));
    EXPECT_EQ(fraction, 1);
    ASSERT_EQ(apply("OutputWorkspace=none/out2").status, 0);
    EXPECT_EQ(run("run ppt").status, 1);
    EXPECT_THAT(run("run ppt").output, HasSubstr("velmora: The output folder"));
}

TEST_F(Command, DiagnosesTheSurfaces) {
    fixture.makeWeather(test::RunFixture::stations(),
                        [](const std::string& p, const test::Station& s, int m) -> FieldValue {
                            return s.name == "S9" ? FieldValue(-999.0)
                                                  : test::RunFixture::usualWeather(p, s, m);
                        },
                        {"TM_", "TN_", "P_"});
    ASSERT_EQ(apply("PrecipitationMethod=EDK RefETMethod=4").status, 0);
    const Outcome ran = run("run ppt --diagnose");
    EXPECT_EQ(ran.status, 0) << ran.output;
    EXPECT_THAT(ran.output, HasSubstr("PPT_Jun  kriging      15    1"));
    EXPECT_THAT(ran.output, HasSubstr("S9 -999 is not between 0 and 1000; left out of PPT_Jun, "
                                      "PPT_Jul"));
    const std::string csv = test::contentOf(folder + "/out/PPT_diagnostics.csv");
    EXPECT_THAT(csv, testing::StartsWith("surface,field,method,valid,excluded,zeros,a,b,n,"
                                         "r_squared,nugget,partial_sill,range_m,equal_to_range_m,"
                                         "weighted_error,bias,rmse,worst_station,worst_error,"
                                         "excluded_stations\n"
                                         "\"PPT_Jun\",\"weather.P_Jun\",\"kriging\",15,1,0,"));
    EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 3);
    EXPECT_EQ(test::contentOf(folder + "/out/PPT_Jul_semivariogram.png").substr(1, 3), "PNG");

    const Outcome json = run("--quiet --json run refet --diagnose");
    EXPECT_EQ(json.status, 0) << json.output;
    const auto list = nlohmann::json::parse(json.results).at("diagnostics");
    std::vector<std::string> surfaces;
    for (const auto& entry : list) surfaces.push_back(entry.at("surface"));
    EXPECT_THAT(surfaces, testing::IsSupersetOf({"TM_Jun", "TN_Jun", "TM_Jul", "TN_Jul"}));
    EXPECT_EQ(list.at(0).at("method"), "IDW");
    EXPECT_EQ(list.at(0).at("leave_one_out").size(), 15U);
    EXPECT_EQ(list.at(0).at("excluded_stations").at(0).at("station"), "S9");
    EXPECT_TRUE(std::filesystem::exists(folder + "/out/RefET_diagnostics.csv"));
    EXPECT_TRUE(std::filesystem::exists(folder + "/out/TM_Jun_semivariogram.png"));
    EXPECT_THAT(run("run nir --diagnose").output, HasSubstr("There are no diagnostics"));
}

TEST_F(Command, DiagnosesTellOfZerosAndOfRangesThatAreNotIdentified) {
    // Of the stations with rain two pairs stand near each other: two distance classes.
    const std::vector<test::Station> few = {
        {"A1", 400100, 4499900, 1500},  {"A2", 400500, 4499900, 1500},
        {"B", 411000, 4492100, 1700},   {"D", 414500, 4492100, 1700},
        {"E", 407000, 4496200, 1900},   {"dry1", 403000, 4495000, 1400},
        {"dry2", 409000, 4498000, 1600}};
    const std::map<std::string, double> rain = {{"A1", 1.0}, {"A2", 1.7}, {"B", 2.0}, {"D", 3.0},
                                                {"E", 1.4},  {"dry1", 0}, {"dry2", 0}};
    fixture.makeStations(few);
    fixture.makeWeather(few,
                        [&](const std::string&, const test::Station& s, int) -> FieldValue {
                            return rain.at(s.name);
                        },
                        {"P_"});
    ASSERT_EQ(apply("PrecipitationMethod=EDK").status, 0);
    const Outcome ran = run("run ppt --diagnose");
    EXPECT_EQ(ran.status, 0) << ran.output;
    EXPECT_THAT(ran.output,
                HasSubstr("note: PPT_Jun: 2 of 7 stations hold 0 in field weather.P_Jun "
                          "and take no part"));
    EXPECT_THAT(ran.output,
                HasSubstr("PPT_Jun: of the errors 2 are of stations that hold 0 and take no part"));
    EXPECT_THAT(ran.output,
                testing::ContainsRegex("PPT_Jun: the range is not identified, [0-9.]* to "
                                       "[0-9.]* km fit equally; the shortest is taken"));
    const std::string csv = test::contentOf(folder + "/out/PPT_diagnostics.csv");
    EXPECT_THAT(csv, HasSubstr("\"PPT_Jun\",\"weather.P_Jun\",\"kriging\",5,2,2,"));
}

// The line stands before the step's own, and --strict takes its number for a no.
TEST_F(CropCommand, WarningsOfTheInputsAreCountedBeforeAStep) {
    EXPECT_THAT(run("run refet").told, Not(HasSubstr("in the inputs")));
    EXPECT_EQ(run("run refet --strict").status, 0);
    crops.makeWeather(test::RunFixture::stations(),
                      [](const std::string& p, const test::Station& s, int m) -> FieldValue {
                          if (p == "TN_" && s.name == "S3") return 70.0;
                          return test::RunFixture::usualWeather(p, s, m);
                      });
    const Outcome ran = run("run refet");
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.told,
                testing::StartsWith("note: 4 warnings of 2 kinds in the inputs: velmora check "
                                    "shows them\n"));
    const Outcome strict = run("run refet --strict");
    EXPECT_EQ(strict.status, 1);
    EXPECT_THAT(strict.told, testing::ContainsRegex("note: warning: .*TN_Jun: S3: 70 > TM_Jun"));
    EXPECT_THAT(strict.told, testing::EndsWith("velmora: 4 warnings of 2 kinds in the inputs, so "
                                               "that --strict lets nothing run\n"));
    EXPECT_THAT(strict.told, Not(HasSubstr("message: ")));
    // Each step asks for its own inputs, all steps for all.
    EXPECT_EQ(run("run kc --strict").status, 0);
    EXPECT_EQ(run("run all --only kc --strict").status, 0);
    EXPECT_EQ(run("run all --strict").status, 1);
    EXPECT_EQ(run("--settings-folder none run refet --strict").status, 1);
}

TEST_F(CropCommand, TheChainToTheZoneTable) {
    EXPECT_EQ(run("run refet").status, 0);
    const Outcome maps = run("run kc");
    EXPECT_EQ(maps.status, 0) << maps.output;
    EXPECT_THAT(maps.output, HasSubstr("message: Joined_kc\nmessage: pre\nmessage: " + folder +
                                       "/out\nmessage: post\nmessage: Kc_loop\n"
                                       "message: Kc-Maps have been generated successfully\n"));
    EXPECT_EQ(run("run cropet").status, 1);  // looks for Kc_Jun
    for (const char* month : {"Jun", "Jul"}) {
        EXPECT_EQ(run(std::string("grid copy Kc_") + month + "_4 Kc_" + month).status, 0);
    }
    const Outcome ran = run("run cropet");
    EXPECT_EQ(ran.status, 0) << ran.output;
    EXPECT_EQ(ran.output,
              "note: 1 warning in the inputs: velmora check shows them\n"
              "message: Ready to create table\nCrop ET of Jun ...\nmessage: RefET_Jun_4\n"
              "note: StatCET: the zone key \"Middle Valley Irrigators' District\" has more than 25 "
              "characters, of which tables keep \"Middle Valley Irrigators'\"\n"
              "Crop ET of Jul ...\nmessage: RefET_Jul_4\n"
              "message: Potential crop ET calculation is completed ...\nThe step has ended.\n");
    EXPECT_EQ(crops.tableRows("StatCET").size(), 6U);
    crops.makeWeather(test::RunFixture::stations(), test::RunFixture::usualWeather, {"P_"});
    EXPECT_EQ(run("run ppt").status, 0);
    EXPECT_EQ(run("run nir").status, 0);
    EXPECT_THAT(run("run nir").output,
                HasSubstr("\nNet irrigation requirement of Jun ...\nnote: StatNIR: the zone key "));
    EXPECT_EQ(crops.tableRows("StatNIR").size(), 6U);
    EXPECT_EQ(run("kc maps --cell-size 20 --field use").status, 0);
    EXPECT_EQ(crops.output("Kc_Jun_4").geometry.cellSize, 100);
    EXPECT_EQ(run("kc maps --field none").status, 1);
}

TEST_F(CropCommand, KcTablesAreMadeFilledAndShown) {
    // Settings may name a table that is yet to be made.
    EXPECT_EQ(apply("RefETMethod=4 KcTable=made.dbf").status, 0);
    EXPECT_EQ(run("kc list").status, 1);
    EXPECT_EQ(run("kc new made.dbf").status, 0);
    EXPECT_EQ(apply("RefETMethod=4 KcTable=crops.dbf").status, 0);
    const Outcome matched = run("kc match --table made.dbf");
    EXPECT_EQ(matched.status, 0) << matched.output;
    EXPECT_EQ(matched.told, "message: match-1\nmessage: match-2\n");
    EXPECT_THAT(matched.results, testing::StartsWith("4 land use types, 4 new crop types in "));
    EXPECT_EQ(run("kc set --table made.dbf Barley May=0.6 jun=1.15").status, 0);
    EXPECT_EQ(run("kc set --table made.dbf Rye Jul=0.5").status, 1);
    EXPECT_EQ(run("kc set --table made.dbf --new Rye Jul=0.5").status, 0);
    EXPECT_EQ(run("kc set --table made.dbf Barley May=0.7 Jun=much").status, 1);
    EXPECT_EQ(run("kc set --table made.dbf Barley Foo=1").status, 1);
    const auto shown = nlohmann::json::parse(run("--json kc list --table made.dbf").output);
    EXPECT_EQ(shown.at("table").size(), 5U);
    EXPECT_EQ(shown.at("table").at(1).at("CropType"), "Barley");
    EXPECT_EQ(shown.at("table").at(1).at("Kc_May"), "0.6");
    EXPECT_EQ(shown.at("table").at(1).at("Kc_Jun"), "1.15");
    EXPECT_EQ(shown.at("table").at(1).at("Kc_Mar"), "0.75");
    EXPECT_EQ(shown.at("table").at(4).at("Kc_Jul"), "0.5");
    EXPECT_EQ(shown.at("landUse").at(1).at("Land use type"), "Alfalfa");
    EXPECT_THAT(run("kc list").output, HasSubstr("O'Brien Corn"));
    EXPECT_EQ(run("kc list --table none.dbf").status, 1);
    EXPECT_EQ(run("--settings-folder none kc list").status, 1);
    EXPECT_THAT(run("--settings-folder none kc list").output,
                HasSubstr("Run Settings First,Please!"));
    EXPECT_EQ(run("kc").status, 2);
}

struct TableCommand : Command {
    test::CropFixture crops;
    TableCommand() {
        folder = crops.folder.path();
        apply("ZoneField=ZONE Zones=zones.shp");
        auto& platform = crops.application.platform();
        CreateStatTable(platform, crops.application.prompts(), crops.folder.file("out"), "StatNIR");
        const auto session = platform.features().edit(
            platform.features().openTable(crops.folder.file("out/StatNIR")));
        session->appendRecord({{"ZoneUnit", std::string("A \"b\", c")}, {"Month", 7.0}});
        session->save();
    }
};

TEST_F(TableCommand, TablesAreShown) {
    const Outcome whole = run("table StatNIR");
    EXPECT_EQ(whole.status, 0) << whole.output;
    EXPECT_THAT(whole.output, HasSubstr("ZoneUnit  Area_T_ac  Area_C_ac  Month"));
    EXPECT_THAT(whole.output, HasSubstr("Note: The shown results was obtained on 20"));
    EXPECT_EQ(run("table StatNIR.dbf --columns month,ZoneUnit --csv").results,
              "ZoneUnit,Month\n\"A \"\"b\"\", c\",7\n");
    const auto rows = nlohmann::json::parse(run("--json table StatNIR").results);
    EXPECT_EQ(rows.at(0).at("Month"), 7);
    EXPECT_EQ(rows.at(0).at("ZoneUnit"), "A \"b\", c");
    EXPECT_TRUE(rows.at(0).at("NIR_D_ft").is_null());
    EXPECT_EQ(run("table StatNIR --columns none").status, 1);
    EXPECT_EQ(run("table StatIRR").status, 1);
    EXPECT_THAT(run("table StatIRR").output, HasSubstr("Source table does not exist."));
    EXPECT_EQ(run("--settings-folder none table StatNIR").status, 1);
    EXPECT_EQ(run("table").status, 2);
}

TEST_F(TableCommand, AZoneTableSaysWhichReadingItIs) {
    const std::string note = "note: StatNIR takes a grid's mean as millimetres per day";
    for (const char* form : {"", " --csv", " --columns Month"}) {
        const Outcome table = run(std::string("table StatNIR") + form);
        EXPECT_THAT(table.told, HasSubstr(note)) << form;
        EXPECT_THAT(table.results, testing::Not(HasSubstr("millimetres"))) << form;
    }
    const Outcome json = run("--json table StatNIR");
    EXPECT_THAT(json.told, HasSubstr(note));
    EXPECT_EQ(nlohmann::json::parse(json.results).at(0).at("reading"), "millimetres per day");
    const Outcome other = run("table ../crops");
    EXPECT_EQ(other.status, 0) << other.told;
    EXPECT_THAT(other.told, testing::Not(HasSubstr("millimetres")));
}

TEST_F(Command, SettingsRoundTrip) {
    EXPECT_EQ(run("settings show").status, 1);
    ASSERT_EQ(apply("Ks=0.17 TimeStep=Daily ShowMonitor=no").status, 0);
    const auto shown = nlohmann::json::parse(run("settings show --json").output);
    EXPECT_EQ(shown.size(), 35U);
    EXPECT_EQ(shown.at("DEM"), folder + "/dem");
    EXPECT_EQ(shown.at("Ks"), 0.17);
    EXPECT_EQ(shown.at("TimeStep"), "Daily");
    EXPECT_EQ(shown.at("ShowMonitor"), false);
    EXPECT_EQ(shown.at("HasTdew"), true);
    EXPECT_EQ(shown.at("RefETMethod"), "2");
    EXPECT_EQ(run("settings save-as saved.inf").status, 0);
    ASSERT_EQ(run("settings apply CellSize=800 RefETMethod=5").status, 0);
    EXPECT_EQ(run("settings load saved.inf").status, 0);
    EXPECT_EQ(nlohmann::json::parse(run("--json settings show").output).at("CellSize"), 400);
    EXPECT_EQ(run("settings load none.inf").status, 1);
    test::write(folder + "/short.inf", test::contentOf(folder + "/saved.inf").substr(0, 60));
    const std::string before = test::contentOf(folder + "/config/velmora/Zav.inf");
    EXPECT_EQ(run("settings load short.inf").status, 1);
    EXPECT_EQ(test::contentOf(folder + "/config/velmora/Zav.inf"), before);
    test::write(folder + "/config/velmora/Zav.inf", "damaged");
    EXPECT_EQ(run("settings load saved.inf").status, 0);  // a good file mends damaged settings
    EXPECT_THAT(run("settings show").output, HasSubstr("CellSize=400\n"));
}

TEST_F(Command, SeveralSettingsFoldersLiveSideBySide) {
    ASSERT_EQ(apply("--settings-folder a").status, 0);
    EXPECT_TRUE(std::filesystem::exists(folder + "/a/Zav.inf"));
    EXPECT_EQ(run("--settings-folder a settings show").status, 0);
    EXPECT_EQ(run("settings show").status, 1);
}

TEST_F(Command, AMissingCellSizeIsProposed) {
    const Outcome proposed =
        run("settings apply DEM=dem WeatherStations=stations.shp WeatherData=weather.dbf "
            "OutputWorkspace=out ExtentProvider=domain.shp");
    EXPECT_EQ(proposed.status, 0) << proposed.output;
    EXPECT_THAT(proposed.output, HasSubstr("CellSize=33.6 is proposed"));
}

TEST_F(Command, BadUsageIsTwo) {
    EXPECT_EQ(run("").status, 2);
    EXPECT_EQ(run("nonsense").status, 2);
    EXPECT_EQ(run("run nonsense").status, 2);
    EXPECT_EQ(run("settings apply Nonsense=1").status, 2);
    EXPECT_EQ(run("settings apply CellSize").status, 2);
    EXPECT_THAT(run("settings apply cellsize=3").output, HasSubstr("CellSize"));
    EXPECT_EQ(run("--yes --no commands").status, 2);
    EXPECT_EQ(run("--help").status, 0);
    EXPECT_EQ(run("settings apply --help").status, 0);
    EXPECT_THAT(run("--version").output, HasSubstr("velmora 0."));
}

TEST_F(Command, RefusedSettingsAreOne) {
    EXPECT_EQ(run("settings apply CellSize=5").status, 1);
    EXPECT_THAT(run("settings apply CellSize=5").output,
                HasSubstr("Weather Stations must be set!"));
    EXPECT_EQ(apply("RefETMethod=9").status, 1);
    EXPECT_EQ(apply("TimeStep=EDK").status, 1);
    EXPECT_EQ(apply("BeginMonth=June").status, 1);
}

TEST_F(Command, CommandsShowTheTree) {
    const auto tree = nlohmann::json::parse(run("--json commands").output);
    EXPECT_EQ(tree.at("caption"), "Velmora:  Water Use Estimation");
    const auto& menu = tree.at("items").at(0);
    EXPECT_EQ(menu.at("items").size(), 4U);
    EXPECT_EQ(menu.at("items").at(1).at("items").at(2).at("caption"), "Estimate Crop ET");
    EXPECT_THAT(run("commands").output, HasSubstr("Calculate Reference ET   [velmora run refet]"));
}

TEST_F(Command, CheckTellsErrorsByItsStatus) {
    fixture.makeWeather(test::RunFixture::stations(), test::RunFixture::usualWeather,
                        {"TM_", "TN_", "TD_", "SR_", "WS_", "P_"});
    EXPECT_EQ(run("check").status, 1);
    apply();
    EXPECT_EQ(run("check").status, 0);
    EXPECT_THAT(run("check").output, HasSubstr("0 errors"));
    apply("DEM=gone");
    EXPECT_EQ(run("check").status, 1);
    EXPECT_THAT(run("check").output, HasSubstr("error: " + folder + "/gone"));
    // One line for the missing values of a kind, or one for each.
    fixture.makeWeather(test::RunFixture::stations(),
                        [](const std::string& p, const test::Station& s, int m) {
                            return p == "P_" && (s.name == "S1" || s.name == "S2")
                                       ? FieldValue()
                                       : test::RunFixture::usualWeather(p, s, m);
                        },
                        {"TM_", "TN_", "TD_", "SR_", "WS_", "P_"});
    EXPECT_THAT(run("check").output,
                HasSubstr("weather.dbf: P_Jun: S1: has no value (4 of the kind, first: P_Jun S1, "
                          "P_Jun S2, P_Jul S1)\n"));
    EXPECT_THAT(run("check --all").output, testing::AllOf(HasSubstr("P_Jun: S1: has no value\n"),
                                                          HasSubstr("P_Jul: S2: has no value\n")));
}

TEST_F(Command, GridsAreCopiedExportedAndDrawn) {
    apply();
    EXPECT_EQ(run("grid copy dem out/IREF").status, 0);
    EXPECT_EQ(run("grid copy IREF faef_500").status, 0);
    EXPECT_TRUE(fixture.hasOutput("faef_500"));
    EXPECT_EQ(run("grid export faef_500 f.tif").status, 0);
    EXPECT_TRUE(std::filesystem::exists(folder + "/f.tif"));
    EXPECT_EQ(run("grid picture faef_500 f.png --title Elevation").status, 0);
    EXPECT_EQ(test::contentOf(folder + "/f.png").substr(1, 3), "PNG");
    EXPECT_EQ(run("grid picture none f2.png").status, 1);
    EXPECT_EQ(run("grid picture dem none/f2.png").status, 1);
    EXPECT_EQ(run("grid info none").status, 1);
}

TEST(ManPage, NamesEveryCommandAndField) {
    const cli::CommandLine commandLine;
    const std::string page = cli::manPage(commandLine.app());
    EXPECT_THAT(page, testing::StartsWith(".TH VELMORA 1"));
    for (const char* text :
         {"velmora settings apply", "velmora run", "velmora grid picture", "velmora demo",
          "velmora check", "EXIT STATUS", "\\-\\-settings\\-folder"}) {
        EXPECT_THAT(page, HasSubstr(text));
    }
    for (const SettingsField& field : settingsFields()) {
        EXPECT_THAT(page, HasSubstr(std::string(field.name)));
    }
    EXPECT_THAT(page, testing::Not(HasSubstr("man-page")));
}

TEST(ManPage, EverySubcommandHasAnExample) {
    const cli::CommandLine commandLine;
    for (const CLI::App* command : commandLine.app().get_subcommands({})) {
        EXPECT_THAT(command->get_footer(), HasSubstr("example: velmora"));
        for (const CLI::App* sub : command->get_subcommands({})) {
            EXPECT_THAT(sub->get_footer(), HasSubstr("example: velmora"));
        }
    }
}

}  // namespace
}  // namespace velmora
