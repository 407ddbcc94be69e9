// SPDX-License-Identifier: MIT
// `velmora run all`, `irdb` and `eff`: shares that were entered stay.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fmt/format.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <utility>

#include "irrigation/irrigation_database.h"
#include "settings/settings_file.h"
#include "tests/support/command_fixture.h"

namespace velmora {
namespace {

using test::ChainCommand;
using test::Outcome;
using testing::HasSubstr;
using testing::Not;

TEST_F(ChainCommand, RunsAllStepsAndMakesAStarterDatabase) {
    const Outcome ran = run("run all --cvef 0.9 --default-shares crop --diagnose");
    ASSERT_EQ(ran.status, 0) << ran.output;
    EXPECT_THAT(ran.output, HasSubstr("out/Kc_Jul_4 is copied to "));
    EXPECT_THAT(ran.output, HasSubstr("out/PPT_diagnostics.csv is written"));
    EXPECT_THAT(ran.output, testing::Not(HasSubstr("There are no diagnostics")));
    EXPECT_THAT(ran.output, HasSubstr("so a starter database is made"));
    EXPECT_THAT(ran.output, HasSubstr("out/IREF is copied to "));
    EXPECT_THAT(ran.output, HasSubstr("IRR_<month>, StatIRR"));
    EXPECT_THAT(ran.output, HasSubstr("\nall zones "));
    for (const char* name : {"RefET_Jul_4", "Kc_Jul", "ET_Jul_4", "PPT_Jul", "NIR_Jul", "IREF",
                             "faef_500", "IRR_Jul"}) {
        EXPECT_TRUE(crops.hasOutput(name)) << name;
    }
    EXPECT_THAT(run("report").output, HasSubstr("/out/report.html: open it in a browser"));
    EXPECT_THAT(test::contentOf(crops.folder.file("out/report.html")), HasSubstr("<td>irr</td>"));
    EXPECT_EQ(run("report").status, 0);
    EXPECT_EQ(run("report none/x.html").status, 1);
    const std::string weather = crops.folder.file("weather.dbf");
    ASSERT_TRUE(std::filesystem::exists(weather));
    std::filesystem::rename(weather, weather + ".away");  // which the check in the report tells
    EXPECT_EQ(run("report").status, 1);
    std::filesystem::rename(weather + ".away", weather);
    EXPECT_EQ(run("--settings-folder none report").status, 1);
    // Drip irrigation has no share of barley, a close-growing crop.
    const auto rows = nlohmann::json::parse(run("--json eff show West").output);
    EXPECT_EQ(rows.at(1).at("CropType"), "Barley");
    EXPECT_EQ(rows.at(1).at("Drip"), 0);
    EXPECT_NEAR(rows.at(1).at("IREF").get<double>(), 0.9 / (0.402 / 0.6 + 0.598 / 0.75), 1e-12);
    EXPECT_TRUE(rows.at(3).at("IREF").is_null());  // water
}

TEST_F(ChainCommand, TablesOfAnyNameAreCounted) {
    ASSERT_EQ(run("irdb create").status, 0);
    crops.application.platform()
        .connections()
        .open(irrigationConnection(folder + "/IrDB.mdb"))
        ->execute("CREATE TABLE \"Notes [2031] \"\"own\"\"\" ([A] INTEGER)");
    const Outcome info = run("irdb info");
    EXPECT_EQ(info.status, 0) << info.told;
    EXPECT_THAT(info.output, HasSubstr("0 rows  Notes [2031] \"own\"\n"));
}

TEST_F(ChainCommand, StopsBeforeAStepThatWouldReadWhatIsOld) {
    ASSERT_EQ(run("run all --default-shares crop --cvef 0.9").status, 0);
    ASSERT_EQ(run("run refet").status, 0);
    const Outcome stopped = run("run all --from nir");
    EXPECT_EQ(stopped.status, 1);
    EXPECT_THAT(stopped.output, HasSubstr("note: The last run of crop ET read reference ET of an "
                                          "earlier run than the last"));
    EXPECT_THAT(stopped.output, HasSubstr("or say --use-old"));
    EXPECT_THAT(stopped.output, HasSubstr("velmora run all --from nir\n"));
    EXPECT_EQ(run("run nir").status, 0);  // a single step tells it and goes on
    EXPECT_EQ(run("run all --from nir --use-old").status, 0);
    EXPECT_EQ(run("run all --from cropet").status, 0);
    EXPECT_EQ(run("run all --from nir").status, 0);
}

TEST_F(ChainCommand, StopsAtTheStepThatFailsAndGoesOnFromThere) {
    const Outcome stopped = run("run all");
    EXPECT_EQ(stopped.status, 1);
    EXPECT_THAT(stopped.output, HasSubstr("No zone has shares of irrigation methods yet"));
    EXPECT_THAT(stopped.output, HasSubstr("velmora run all --from eff\n"));
    EXPECT_TRUE(crops.hasOutput("NIR_Jul"));
    EXPECT_FALSE(crops.hasOutput("IREF"));
    const Outcome rest = run("--quiet run all --from eff --default-shares zone --cvef 1");
    EXPECT_EQ(rest.status, 0) << rest.output;
    EXPECT_THAT(rest.output, testing::Not(HasSubstr("refet")));
    EXPECT_TRUE(crops.hasOutput("IRR_Jul"));
    // A copy that stands is the user's when this chain has not made its source.
    const Outcome only = run("--quiet run all --only cropet");
    EXPECT_EQ(only.status, 0);
    EXPECT_THAT(only.output, HasSubstr("Kc_Jun is used as it stands"));
    EXPECT_EQ(run("run all --only irr --from ppt").status, 2);
    EXPECT_EQ(run("run all --from nowhere").status, 2);
    EXPECT_EQ(run("--settings-folder none run all").status, 1);
}

TEST_F(ChainCommand, EfficienciesAreFilledSetAndMapped) {
    EXPECT_EQ(run("eff apply").status, 1);  // no database
    EXPECT_THAT(run("eff apply").output,
                HasSubstr("message: Incorrect IRDB information!\nreason: "));
    EXPECT_EQ(run("irdb create").status, 0);
    EXPECT_EQ(run("--yes irdb create").status, 1);
    EXPECT_THAT(run("irdb create --replace-database").output,
                HasSubstr("note: The old database is kept as " + folder + "/IrDB_20"));
    EXPECT_THAT(run("irdb info").output, HasSubstr("3 rows  IRMDDef"));
    EXPECT_EQ(run("eff show").status, 1);
    const Outcome applied = run("eff apply");
    EXPECT_EQ(applied.status, 0);
    EXPECT_THAT(applied.output, HasSubstr("message: New <IREF> table is created!"));
    EXPECT_THAT(applied.output, HasSubstr("zones: West, Middle Valley Irrigators' District"));
    EXPECT_EQ(run("eff map").status, 1);
    EXPECT_EQ(run("eff zone \"O'Dell's\" --cvef 0.9 --default-shares zone").status, 0);
    EXPECT_EQ(run("eff zone Nowhere").status, 1);
    EXPECT_EQ(run("eff zone West --cvef 1.2").status, 2);
    EXPECT_EQ(run("run all --cvef 0,9 --default-shares zone").status, 2);
    EXPECT_EQ(run("run all --cvef 0.9").status, 2);
    EXPECT_EQ(run("eff set \"O'Dell's\" Barley").status, 2);
    EXPECT_EQ(run("eff set \"O'Dell's\" Barley Sprinkler=1 surface=0 Drip=0").status, 0);
    EXPECT_EQ(run("eff set \"O'Dell's\" Barley Rain=1").status, 1);
    EXPECT_EQ(run("eff set \"O'Dell's\" Barley Drip=-1").status, 1);
    EXPECT_EQ(run("eff set \"O'Dell's\" Rye Drip=1").status, 1);
    const auto rows = nlohmann::json::parse(run("--json eff show \"O'Dell's\"").output);
    EXPECT_EQ(rows.at(1).at("FAEF"), 0.75);
    EXPECT_EQ(rows.at(1).at("IREF"), 0.675);
    EXPECT_THAT(run("eff show --csv").output,
                testing::StartsWith("ZoneUnit,CropType,Surface,Sprinkler,Drip,FAEF,CVEF,IREF\n"));
    EXPECT_THAT(run("eff map").output, HasSubstr("cells with efficiencies of 0.6"));
    EXPECT_EQ(run("--quiet eff all-zones --default-shares crop").status, 0);
    EXPECT_EQ(run("run eff").status, 0);
    EXPECT_EQ(run("eff").status, 2);
}

struct Efficiencies : ChainCommand {
    Efficiencies() {
        EXPECT_EQ(run("irdb create").status, 0);
        EXPECT_EQ(run("eff all-zones --default-shares crop --cvef 0.9").status, 0);
        EXPECT_EQ(run("eff set West Barley Surface=0.1 Sprinkler=0.9 Drip=0").status, 0);
    }
    nlohmann::json rows(const std::string& zone = "") {
        return nlohmann::json::parse(
            run("--json eff show " + (zone.empty() ? "" : "\"" + zone + "\"")).results);
    }
    bool keepsWhatWasEntered() {
        const auto all = rows("West");
        return all.size() > 1 && all.at(1).at("Sprinkler") == 0.9;
    }
};

TEST_F(Efficiencies, YesDropsNoTable) {
    const auto before = rows();
    for (const char* command : {"--yes run eff", "--yes eff map", "--yes eff apply",
                                "--yes eff zone West", "--yes eff all-zones"}) {
        EXPECT_EQ(run(command).status, 0) << command;
        EXPECT_EQ(rows(), before) << command;
    }
    EXPECT_EQ(run("--yes irdb create").status, 1);
    EXPECT_EQ(rows(), before);
}

TEST_F(Efficiencies, DefaultSharesFillOnlyRowsWithoutShares) {
    const Outcome filled = run("eff all-zones --default-shares zone");
    EXPECT_EQ(filled.status, 0) << filled.output;
    EXPECT_THAT(filled.told, HasSubstr("with shares, or not irrigated: --overwrite-shares would"));
    EXPECT_TRUE(keepsWhatWasEntered());
    EXPECT_EQ(run("eff zone \"O'Dell's\" --default-shares crop").status, 0);
    EXPECT_TRUE(keepsWhatWasEntered());  // the other zones' rows stay
    EXPECT_EQ(run("run eff --default-shares crop").status, 0);
    EXPECT_TRUE(keepsWhatWasEntered());
    EXPECT_EQ(run("eff zone West --overwrite-shares").status, 2);
    EXPECT_EQ(run("eff zone West --default-shares crop --overwrite-shares").status, 0);
    EXPECT_FALSE(keepsWhatWasEntered());
}

TEST_F(Efficiencies, AConveyanceEfficiencyKeepsTheShares) {
    EXPECT_EQ(run("eff zone West --cvef 0.8").status, 0);
    EXPECT_TRUE(keepsWhatWasEntered());
    EXPECT_EQ(rows("West").at(1).at("CVEF"), 0.8);
    EXPECT_EQ(run("eff zone West --default-shares crop").status, 0);
    EXPECT_EQ(rows("West").at(1).at("CVEF"), 0.8);  // not named, so not changed
    EXPECT_EQ(run("eff set West --cvef 0.5").status, 0);
    const auto row = rows("West").at(1);
    EXPECT_EQ(row.at("CVEF"), 0.5);
    EXPECT_DOUBLE_EQ(row.at("IREF").get<double>(), row.at("FAEF").get<double>() * 0.5);
    EXPECT_EQ(run("eff set West Barley --cvef 0.6").status, 0);
    EXPECT_EQ(rows("West").at(1).at("CVEF"), 0.6);
    EXPECT_EQ(rows("West").at(0).at("CVEF"), 0.5);
    EXPECT_EQ(run("eff set West").status, 2);
}

TEST_F(Efficiencies, LandIsDeclaredNotIrrigated) {
    const Outcome zeros = run("eff set West Barley Surface=0 Sprinkler=0 Drip=0");
    EXPECT_EQ(zeros.status, 0);
    EXPECT_THAT(zeros.told, HasSubstr("note: Shares are all 0, so that the efficiency of earlier"));
    EXPECT_GT(rows("West").at(1).at("IREF").get<double>(), 0.5);
    EXPECT_EQ(run("eff set West Barley --not-irrigated").status, 0);
    EXPECT_EQ(rows("West").at(1).at("IREF"), 0);
    EXPECT_EQ(run("eff all-zones --default-shares crop").status, 0);
    EXPECT_EQ(rows("West").at(1).at("IREF"), 0);  // is as entered as a share is
    EXPECT_EQ(rows("West").at(1).at("NotIrrigated"), 1);
    const Outcome map = run("eff map");
    EXPECT_THAT(map.told, testing::ContainsRegex("note: [0-9]+\\.[0-9] acres are declared not "
                                                 "irrigated\n"));
    EXPECT_THAT(map.told, HasSubstr("have no efficiency, and so no irrigation requirement"));
    EXPECT_THAT(map.told, testing::ContainsRegex("Water \\([0-9]+, [0-9]+\\.[0-9] acres\\)"));
    EXPECT_THAT(map.told, Not(HasSubstr("Barley (")));  // is not reported as missing
    const auto land = crops.application.platform().features().openFeatureClass(
        folder + "/out/Lu_Intersected.shp");
    double acres = 0;
    for (const double area : land->areas()) acres += area / 4047;
    EXPECT_THAT(map.told, HasSubstr(fmt::format(" acres of {:.1f} acres: ", acres)));
    EXPECT_THAT(run("check").results, Not(testing::ContainsRegex("Barley: [0-9.]+ acres")));
    EXPECT_EQ(run("eff set West Barley Drip=1 --not-irrigated").status, 2);
    // Shares take the declaration back, and so do default shares that overwrite.
    EXPECT_EQ(run("eff set West Barley Surface=1").status, 0);
    EXPECT_TRUE(rows("West").at(1).at("NotIrrigated").is_null());
    EXPECT_GT(rows("West").at(1).at("IREF").get<double>(), 0.5);
    EXPECT_EQ(run("eff set West Barley --not-irrigated").status, 0);
    EXPECT_EQ(run("eff all-zones --default-shares crop --overwrite-shares").status, 0);
    EXPECT_TRUE(rows("West").at(1).at("NotIrrigated").is_null());
    EXPECT_GT(rows("West").at(1).at("IREF").get<double>(), 0.5);
}

TEST_F(Efficiencies, AMethodsEfficiencyChangesAndSharesStay) {
    const auto before = rows("West").at(1);
    const auto others = rows("O'Dell's");
    EXPECT_EQ(run("eff method West sprinkler=0.85").status, 0);
    const auto after = rows("West").at(1);
    EXPECT_EQ(after.at("Sprinkler"), before.at("Sprinkler"));
    EXPECT_NEAR(after.at("FAEF").get<double>(),
                1 / (before.at("Surface").get<double>() / 0.6 +
                     before.at("Sprinkler").get<double>() / 0.85),
                1e-12);
    EXPECT_GT(after.at("FAEF"), before.at("FAEF"));
    EXPECT_EQ(rows("O'Dell's"), others);  // of its zone alone
    const Outcome percent = run("eff method West Sprinkler=85");
    EXPECT_EQ(percent.status, 1);
    EXPECT_THAT(percent.told, HasSubstr("Sprinkler=85: give METHOD=EFFICIENCY, as in Surface=0.8, "
                                        "a fraction; the methods are Surface, Sprinkler, Drip"));
    for (const char* bad : {"Sprinkler=0", "Sprinkler", "Pivot=0.8", "Sprinkler=x"}) {
        EXPECT_EQ(run(std::string("eff method West Drip=0.1 ") + bad).status, 1) << bad;
    }
    EXPECT_EQ(rows("West").at(1), after);  // none of several is stored when one is wrong
    EXPECT_EQ(run("eff method North Drip=0.8").status, 1);
}

TEST_F(Efficiencies, EveryChangeIsKept) {
    const auto changes = [&] { return nlohmann::json::parse(run("--json irdb changes").results); };
    const std::size_t filled = changes().size();
    EXPECT_GT(filled, 8U);  // a row for each of the zones' rows
    EXPECT_EQ(changes().at(0).at("ChangedWith"), "default shares of crop");
    EXPECT_EQ(run("eff all-zones --default-shares crop").status, 0);
    EXPECT_EQ(changes().size(), filled);  // nothing has changed
    EXPECT_EQ(shell("eff set West --cvef 0.5 2>told", "LOGNAME=karla").status, 0);
    const auto set = changes();
    ASSERT_GT(set.size(), filled);
    const auto& first = set.at(filled);
    EXPECT_EQ(first.at("ChangedBy"), "karla");
    EXPECT_EQ(first.at("ChangedWith"), "eff set");
    EXPECT_EQ(first.at("TableName"), "IREF");
    EXPECT_EQ(first.at("ZoneUnit"), "West");
    EXPECT_EQ(first.at("Item"), "Alfalfa");
    EXPECT_EQ(first.at("Field"), "CVEF");
    EXPECT_EQ(first.at("OldValue"), "0.9");
    EXPECT_EQ(first.at("NewValue"), "0.5");
    EXPECT_THAT(first.at("ChangedAt").get<std::string>(),
                testing::MatchesRegex("20[0-9-]+ [0-9:]+ [+-][0-9]+"));
    EXPECT_EQ(run("eff method West Drip=0.8").status, 0);
    EXPECT_EQ(changes().back().at("TableName"), "IRMD");
    EXPECT_EQ(changes().back().at("OldValue"), "0.9");
    EXPECT_THAT(run("irdb changes --csv").results, HasSubstr("eff method,IRMD,West,Drip,IRMDEF,"));
    EXPECT_EQ(run("eff apply --new-tables").status, 0);
    const auto dropped = changes();
    EXPECT_EQ(dropped.back().at("ChangedWith"), "efficiency dialog");
    EXPECT_EQ(dropped.back().at("Field"), "row");
    EXPECT_EQ(dropped.back().at("NewValue"), "");
}

// Land that gets no efficiency, and rows that can hardly be meant, are warnings before a run.
TEST_F(ChainCommand, RowsOfEfficienciesAreChecked) {
    ASSERT_EQ(run("irdb create").status, 0);
    ASSERT_EQ(run("eff apply").status, 0);
    EXPECT_THAT(run("check").results, Not(HasSubstr("ZoneUnit")));  // there are no rows yet
    ASSERT_EQ(run("eff zone West --default-shares crop").status, 0);
    const std::string database = ": " + folder + "/IrDB.mdb: ";
    const Outcome first = run("check --all");
    double acres = 0;
    for (const test::Shape& zone : crops.zones()) {
        if (zone.key == "O'Dell's") acres = test::areaOf(zone) / 4047;
    }
    EXPECT_THAT(first.results,
                HasSubstr("warning" + database + "ZoneUnit: O'Dell's: " +
                          fmt::format("{:.1f} acres of zone have no row of shares", acres)));
    EXPECT_THAT(first.results, Not(HasSubstr("ZoneUnit: West")));
    EXPECT_THAT(first.results, testing::ContainsRegex("note" + database +
                                                      "CropType: Water: [0-9.]+ acres of the land "
                                                      "cover: no efficiency in 1 of 1 zone, "));
    EXPECT_THAT(first.results, Not(HasSubstr("CropType: Barley")));
    EXPECT_EQ(run("eff set West Barley Surface=35 Sprinkler=65 --cvef 0.5").status, 0);
    EXPECT_THAT(run("check").results,
                HasSubstr("warning" + database + "IREF: Shares do not add to 1 (percent? "));
    EXPECT_THAT(run("run eff").told, HasSubstr(" in the inputs: velmora check shows them\n"));
    EXPECT_EQ(run("run eff --strict").status, 1);
}

// What a name tells decides; of one that tells nothing the user, and without one it is no.
TEST_F(ChainCommand, TheStarterTellsWhatItTakesAsIrrigated) {
    auto fields = crops.fields();
    for (auto& field : fields) {
        if (field.key == "Barley") field.key = "Class 12";
    }
    crops.makeCropLand(fields);
    const Outcome made = run("irdb create");
    EXPECT_EQ(made.status, 0);
    EXPECT_THAT(made.told,
                HasSubstr("note: Taken as irrigated by their names: Alfalfa, O'Brien Corn\n"
                          "note: Taken as not irrigated by their names: Water\n"
                          "question: The names of 1 type tell nothing (Class 12): are they "
                          "irrigated? no\n"
                          "note: Taken as not irrigated, since their names tell nothing"));
    const auto shareOf = [&] {
        const auto connection = crops.application.platform().connections().open(
            irrigationConnection(folder + "/IrDB.mdb"));
        const auto row = connection->open(
            "SELECT * FROM IR_Dis_2 WHERE ZONEUNIT = 'West' AND CropType = 'Class 12'");
        return std::get<double>(row->value("Surface"));
    };
    EXPECT_EQ(shareOf(), 0);
    const Outcome yes = run("--yes irdb create --replace-database");
    EXPECT_EQ(yes.status, 0);
    EXPECT_THAT(yes.told, Not(HasSubstr("question: ")));
    EXPECT_EQ(shareOf(), 0);
    const Outcome chain = run("run eff --default-shares crop");
    EXPECT_EQ(chain.status, 0);
    EXPECT_THAT(run("check").results,
                testing::ContainsRegex("warning: .*IrDB.mdb: CropType: Class 12: [0-9.]+ acres of "
                                       "the land cover: no efficiency in 3 of 3 zones"));
}

TEST_F(Efficiencies, NewTablesKeepACopyOfTheOldOne) {
    const Outcome made = run("eff apply --new-tables");
    EXPECT_EQ(made.status, 0) << made.output;
    EXPECT_THAT(made.told,
                HasSubstr("note: The old shares and efficiencies are kept as table IREF_20"));
    EXPECT_TRUE(rows().empty());
    const auto info = nlohmann::json::parse(run("--json irdb info").results).at("tables");
    double kept = 0;
    for (const auto& [table, count] : info.items()) {
        if (table.starts_with("IREF_")) kept = count.get<double>();
    }
    EXPECT_GT(kept, 8);
}

TEST_F(Efficiencies, WhatCanHardlyBeMeantIsTold) {
    EXPECT_THAT(run("eff set West Barley Surface=10 Sprinkler=90 Drip=0").told,
                HasSubstr("note: Shares do not add to 1 (percent? the methods' efficiencies are "
                          "fractions): zone \"West\", crop \"Barley\" (100)"));
    const Outcome half = run("eff set West Barley Surface=0.1 Sprinkler=0.4 Drip=0");
    EXPECT_THAT(half.told, HasSubstr("crop \"Barley\" (0.5)"));
    EXPECT_THAT(half.told,
                HasSubstr("note: FAEF is no fraction above 0 and up to 1: zone \"West\""));
    EXPECT_EQ(half.status, 0);
    EXPECT_THAT(run("run eff").told, HasSubstr("note: Shares do not add to 1: "));
    EXPECT_EQ(run("eff set West Barley Surface=0.1 Sprinkler=0.9 Drip=0").told, "");
}

TEST_F(Efficiencies, AMapWithoutACellIsAFailure) {
    for (const char* zone : {"West", "O'Dell's", "Middle Valley Irrigators' District"}) {
        for (const auto& row : rows(zone)) {
            EXPECT_EQ(run("eff set \"" + std::string(zone) + "\" \"" +
                          row.at("CropType").get<std::string>() + "\" --not-irrigated")
                          .status,
                      0);
        }
    }
    const Outcome ran = run("run eff");
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.told, HasSubstr("reason: No cell has an efficiency"));
    EXPECT_THAT(test::contentOf(folder + "/out/velmora_runs.json"),
                HasSubstr("No cell has an efficiency"));
    EXPECT_EQ(run("eff map").status, 1);
}

TEST_F(ChainCommand, TheHintRepeatsTheOptions) {
    EXPECT_EQ(run("--settings-folder 'o f' settings apply DEM=none").status, 1);
    const Outcome stopped =
        run("--settings-folder 'o f' --threads 1 run all --database \"it's.mdb\" --cvef 0.9 "
            "--default-shares crop --overwrite-shares --diagnose");
    EXPECT_EQ(stopped.status, 1);
    EXPECT_THAT(stopped.told,
                HasSubstr("\n  velmora --settings-folder '" + folder +
                          "/o f' --threads 1 run all --from refet --database '" + folder +
                          "/it'\\''s.mdb' --cvef 0.9 --default-shares crop --overwrite-shares "
                          "--diagnose\n"));
}

TEST_F(ChainCommand, PeriodsWithoutMonthsAndMissingTotalsAreTold) {
    EXPECT_EQ(run("run all --only refet").status, 0);
    EXPECT_EQ(run("run all --only kc").status, 0);
    const Outcome crop = run("run all --only cropet");
    EXPECT_EQ(crop.status, 0) << crop.output;
    EXPECT_THAT(crop.results, testing::ContainsRegex("all zones +[0-9.]+ +- +- +[0-9.]+ +- +-\n"));
    // No form stores such a period, but a file may hold it.
    IFileSystem& files = crops.application.platform().files();
    const std::string path = defaultSettingsPath(folder + "/config/velmora");
    RunSettings settings = readSettings(files, path);
    std::swap(settings.BeginMonth, settings.EndMonth);
    writeSettings(files, path, settings);
    const Outcome none = run("run all --only kc");
    EXPECT_THAT(none.output, HasSubstr("the period begins in Jul and ends in Jun"));
    EXPECT_THAT(none.output, Not(HasSubstr("Made in")));
}

}  // namespace
}  // namespace velmora
