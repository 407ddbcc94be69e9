// SPDX-License-Identifier: MIT
// What runs record of themselves, and `velmora verify` and `velmora seal` over it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "gis/text.h"
#include "platform/records/record_parts.h"
#include "tests/support/command_fixture.h"

namespace velmora {
namespace {

using nlohmann::json;
using test::Outcome;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct Records : test::BasinCommand {
    json record(const std::string& step) const {
        return json::parse(test::contentOf(basin("output/velmora_record_" + step + ".json")));
    }
    // By files and records alone.
    json verified() { return json::parse(inBasin("--json verify --bands 0").output); }
    json madeAgain() { return json::parse(inBasin("--json verify --bands 1").output); }

    // Changes one byte in the middle of a file while `look` looks.
    template <class Look>
    void withOneByteChanged(const std::string& path, Look look) {
        const std::string whole = test::contentOf(path);
        ASSERT_FALSE(whole.empty()) << path;
        std::string changed = whole;
        changed[changed.size() / 2] ^= 1;
        test::write(path, changed);
        look();
        test::write(path, whole);
    }
};

std::vector<std::string> pathsOf(const json& datasets) {
    std::vector<std::string> paths;
    for (const json& dataset : datasets) paths.push_back(dataset.at("path"));
    return paths;
}

std::vector<std::string> textsOf(const json& verified) {
    std::vector<std::string> texts;
    for (const json& mismatch : verified.at("mismatches")) {
        texts.push_back(mismatch.at("path").get<std::string>() + ": " +
                        mismatch.at("text").get<std::string>());
    }
    return texts;
}

TEST_F(Records, TellWhatARunWasMadeOf) {
    const json ppt = record("ppt");
    EXPECT_EQ(ppt.at("state"), "complete");
    EXPECT_EQ(ppt.at("settings").at("Year"), "2023");
    EXPECT_EQ(ppt.at("settings").size(), 35U);
    EXPECT_EQ(ppt.at("program").at("version"), "0.1.0");
    EXPECT_EQ(ppt.at("program").at("host"), "velmora command");
    EXPECT_THAT(pathsOf(ppt.at("inputs")),
                ElementsAre(basin("dem"), basin("domain.shp"), basin("stations.shp"),
                            basin("weather.dbf")));
    EXPECT_EQ(ppt.at("inputs").at(0).at("crs").at("datum"), "North American Datum 1983");
    EXPECT_THAT(pathsOf(ppt.at("outputs")), AllOf(testing::SizeIs(12), Contains("PPT_Jul")));
    ASSERT_EQ(ppt.at("surfaces").size(), 12U);
    EXPECT_EQ(ppt.at("surfaces").at(0).at("surface"), "PPT_Jan");
    EXPECT_EQ(ppt.at("surfaces").at(0).at("estimator"), "kriging");
    EXPECT_GT(ppt.at("surfaces").at(0).at("line").at("b_per_metre"), 0);
    EXPECT_LE(ppt.at("began"), ppt.at("ended"));

    const json nir = record("nir");
    EXPECT_EQ(nir.at("statements").at(0).at("text"), "[ET] - 0.8 * [PPT]");
    EXPECT_EQ(nir.at("statements").at(0).at("times"), 12);
    EXPECT_EQ(nir.at("sources").at("ppt"), ppt.at("run"));
    for (const json& input : nir.at("inputs")) {
        if (input.at("path") != "PPT_Jul") continue;
        EXPECT_EQ(input.at("made_by").at("run"), ppt.at("run"));
    }
    EXPECT_THAT(pathsOf(record("eff").at("inputs")),
                ElementsAre(basin("IrDB.mdb"), basin("domain.shp"), basin("landcover.shp"),
                            basin("zones.shp")));
    EXPECT_THAT(pathsOf(record("refet").at("outputs")),
                AllOf(Contains("GridOP.mdb"), Contains("TM_Jan"), Contains("NewDEM")));
}

TEST_F(Records, GridsUnderTheirOtherNameAreKnownByTheirCells) {
    const json irr = record("irr");
    for (const json& input : irr.at("inputs")) {
        if (input.at("path") != "faef_500") continue;
        EXPECT_EQ(input.at("copy_of"), "IREF");
        EXPECT_EQ(input.at("made_by").at("run"), record("eff").at("run"));
        return;
    }
    FAIL() << "no faef_500 among the inputs";
}

TEST_F(Records, AStationThatIsLeftOutHasAReason) {
    const json surfaces = record("refet").at("surfaces");
    for (const json& surface : surfaces) {
        EXPECT_GT(surface.at("stations"), 0) << surface;
        for (const json& station : surface.at("left_out")) {
            EXPECT_FALSE(station.at("reason").get<std::string>().empty());
        }
    }
    EXPECT_EQ(surfaces.size(), 60U);
}

// The counts are those that a look at all cells of the sample's grids (NumPy) gives.
TEST_F(Records, HoldWhatNoPhysicsAllows) {
    const json months = record("refet").at("quality");
    ASSERT_EQ(months.size(), 12U);
    const json& december = months.at(11);
    EXPECT_EQ(december.at("grid"), "RefET_Dec_2");
    EXPECT_EQ(december.at("month"), "Dec");
    EXPECT_EQ(december.at("cells"), 75000);
    const json& negative = december.at("flags").at(0);
    EXPECT_EQ(negative.at("flag"), "reference ET below 0");
    EXPECT_EQ(negative.at("bit"), 1);
    EXPECT_EQ(negative.at("cells"), 30555);
    EXPECT_NEAR(negative.at("share"), 0.4074, 1e-9);
    EXPECT_NEAR(negative.at("worst").at("value"), -1.23790, 1e-5);
    EXPECT_EQ(negative.at("worst").at("unit"), "inches");
    EXPECT_EQ(negative.at("worst").at("column"), 6);
    EXPECT_EQ(negative.at("worst").at("row"), 2);
    EXPECT_EQ(december.at("flags").at(1).at("cells"), 37320);
    EXPECT_EQ(december.at("flags").at(2).at("cells"), 11712);
    EXPECT_THAT(record("refet").at("warnings"),
                Contains(testing::StartsWith("RefET_Dec_2: 41 % of the cells: reference ET below 0 "
                                             "(lowest -1.24 inches at column 6, row 2); 50 %: ")));
    const json refet = record("refet");
    for (const json& surface : refet.at("surfaces")) {
        if (surface.at("surface") != "TD_Dec") continue;
        EXPECT_GT(surface.at("line").at("slope_probability"), 0.05);
        EXPECT_EQ(surface.at("line").at("highest_station"), 1920.2);
    }
}

TEST_F(Records, GridsOfFlagsAreMadeWhereTheyAreAskedFor) {
    EXPECT_FALSE(std::filesystem::exists(basin("output/QA_Dec_2")));
    EXPECT_EQ(inBasin("run ppt --quality").status, 2);
    const Outcome made = inBasin("--json run refet --quality");
    ASSERT_EQ(made.status, 0) << made.told;
    EXPECT_THAT(pathsOf(record("refet").at("outputs")), Contains("QA_Dec_2"));
    EXPECT_TRUE(std::filesystem::exists(basin("output/QA_Dec_2")));
    EXPECT_EQ(inBasin("verify --bands 0").status, 1);  // the steps after it are older
    EXPECT_EQ(inBasin("run all --quality --only refet").status, 0);
}

TEST_F(Records, AWorkDatabaseThatIsForgoneIsNoOutput) {
    EXPECT_EQ(inBasin("run ppt --no-work-database").status, 2);
    const Outcome made = inBasin("--json run refet --no-work-database");
    ASSERT_EQ(made.status, 0) << made.output << made.told;
    EXPECT_FALSE(std::filesystem::exists(basin("output/GridOP.mdb")));
    const json refet = record("refet");
    for (const json& output : refet.at("outputs")) {
        EXPECT_NE(output.at("path"), "GridOP.mdb");
    }
}

TEST_F(Records, NameUserAndMachineUnlessTheyMustNot) {
    EXPECT_TRUE(record("ppt").at("started_by").contains("user"));
    EXPECT_TRUE(record("ppt").at("started_by").contains("machine"));
    ASSERT_EQ(inBasin("--quiet --anonymous run ppt").status, 0);
    EXPECT_TRUE(record("ppt").at("started_by").is_null());
}

TEST_F(Records, AFailedRunIsRecordedAsOne) {
    std::filesystem::remove(basin("output/PPT_Aug/w001001.adf"));
    EXPECT_EQ(inBasin("--quiet run nir").status, 1);
    const json nir = record("nir");
    EXPECT_EQ(nir.at("state"), "failed");
    EXPECT_THAT(pathsOf(nir.at("outputs")), AllOf(Contains("NIR_Jul"), Not(Contains("NIR_Aug"))));
    EXPECT_THAT(nir.at("warnings").dump(), HasSubstr("PPT_Aug"));
    EXPECT_THAT(textsOf(verified()),
                Contains(HasSubstr("the run of nir did not come to its end (failed)")));
}

TEST_F(Records, VerifyFindsOneChangedByteInEachKindOfFile) {
    ASSERT_TRUE(verified().at("clean"));
    const std::map<std::string, std::string> files = {
        {"output/RefET_Jul_2/w001001.adf", "made by refet"},
        {"output/RefET_Jul_2/hdr.adf", "made by refet"},
        {"output/TM_Jan/sta.adf", "made by refet"},
        {"output/GridOP.mdb", "made by refet"},
        {"output/Kc_Jul/w001001.adf", "input of cropet"},
        {"output/StatIRR.dbf", "made by irr"},
        {"output/Lu_Intersected.shp", "made by eff"},
        {"output/IREF/w001001x.adf", "made by eff"},
        {"dem/w001001.adf", "input of "},
        {"weather.dbf", "input of "},
        {"stations.shp", "input of "},
        {"zones.shp", "input of "},
        {"landcover.dbf", "input of "},
        {"kc.dbf", "input of kc"},
        {"domain.prj", "input of "},
        {"IrDB.mdb", "input of eff"}};
    for (const auto& entry : files) {
        const auto& name = entry.first;
        const auto& text = entry.second;
        withOneByteChanged(basin(name), [&] {
            const json found = verified();
            ASSERT_FALSE(found.at("mismatches").empty()) << name;
            for (const std::string& mismatch : textsOf(found)) {
                EXPECT_THAT(mismatch, AllOf(HasSubstr(fileName(name)), HasSubstr(text),
                                            HasSubstr("has changed")));
            }
        });
    }
    EXPECT_TRUE(verified().at("clean"));
    // Each step that has read other bytes is told, and no other.
    const std::string table = basin("landcover.dbf");
    withOneByteChanged(table, [&] {
        EXPECT_THAT(textsOf(verified()), ElementsAre(table + ": input of kc, has changed",
                                                     table + ": input of eff, has changed"));
    });
    const std::string path = basin("output/velmora_record_eff.json");
    auto eff = platform::Json::parse(test::contentOf(path));
    eff.erase("xxh3");
    for (auto& input : eff.at("inputs")) {
        for (auto& file : input.at("files")) {
            if (file.at("path") == table) file["sha256"] = "of other bytes";
        }
    }
    test::write(path, platform::recordText(eff));
    EXPECT_THAT(textsOf(verified()), ElementsAre(table + ": input of eff, has changed"));
}

// The record is made to agree with the changed grid, so that only making its cells again tells.
TEST_F(Records, VerifyMakesCellsOfEveryProductAgain) {
    const json clean = madeAgain();
    ASSERT_TRUE(clean.at("clean")) << clean.at("mismatches");
    std::vector<std::string> steps;
    for (const json& sample : clean.at("made_again")) {
        EXPECT_GT(sample.at("cells"), 1000) << sample;
        steps.push_back(sample.at("step"));
    }
    EXPECT_THAT(steps,
                testing::UnorderedElementsAre("refet", "kc", "cropet", "ppt", "nir", "eff", "irr"));
    for (const auto& [grid, step] : {std::pair{"RefET_Jul_2", "refet"},
                                     {"Kc_Jul_2", "kc"},
                                     {"ET_Jul_2", "cropet"},
                                     {"PPT_Jul", "ppt"},
                                     {"NIR_Jul", "nir"},
                                     {"IREF", "eff"},
                                     {"IRR_Jul", "irr"}}) {
        const std::string path = basin(std::string("output/") + grid + "/w001001.adf");
        const std::string whole = test::contentOf(path);
        std::string changed = whole;
        // The second byte of every number: a little more or less of it. No data stays.
        for (std::size_t tile = 100; tile < changed.size(); tile += 16386) {
            for (std::size_t at = tile + 2; at + 4 <= tile + 16386; at += 4) {
                if (changed.compare(at, 4, "\xff\x7f\xff\xff") != 0) changed[at + 1] ^= 8;
            }
        }
        test::write(path, changed);
        EXPECT_THAT(textsOf(madeAgain()), Contains(AllOf(HasSubstr(std::string(grid) + ": "),
                                                         HasSubstr("made again differ"))))
            << step;
        test::write(path, whole);
    }
    const Outcome found = inBasin("verify");
    EXPECT_EQ(found.status, 0) << found.output;
    EXPECT_THAT(found.output, HasSubstr("all as recorded"));
}

TEST_F(Records, VerifyLeavesInputsAndOutputsAsTheyWere) {
    const std::string stations = test::contentOf(basin("stations.dbf"));
    const std::string record = test::contentOf(basin("output/velmora_record_ppt.json"));
    ASSERT_EQ(inBasin("verify").status, 0);
    EXPECT_EQ(test::contentOf(basin("stations.dbf")), stations);
    EXPECT_EQ(test::contentOf(basin("output/velmora_record_ppt.json")), record);
}

TEST_F(Records, VerifyFindsWhatIsMissingOrOfAnotherLength) {
    test::write(basin("output/StatNIR.dbf"), test::contentOf(basin("output/StatNIR.dbf")) + "x");
    std::filesystem::remove_all(basin("output/ET_Jul_2"));
    const auto found = textsOf(verified());
    EXPECT_THAT(found, Contains(HasSubstr("StatNIR.dbf: made by nir, has changed: it had ")));
    EXPECT_THAT(found, Contains(HasSubstr("ET_Jul_2/w001001.adf: made by cropet, is missing")));
}

TEST_F(Records, VerifyLeavesTheWorkingFieldsOfStationsAlone) {
    std::string table = test::contentOf(basin("stations.dbf"));
    const auto last = table.find_last_of("0123456789");  // of RefPPT, the last field
    table[last] = table[last] == '1' ? '2' : '1';
    test::write(basin("stations.dbf"), table);
    EXPECT_TRUE(verified().at("clean"));
    const auto name = table.find("Stanley");
    ASSERT_NE(name, std::string::npos);
    table[name] = 's';
    test::write(basin("stations.dbf"), table);
    EXPECT_THAT(textsOf(verified()), Contains(HasSubstr("stations.dbf: input of refet")));
}

TEST_F(Records, VerifyFindsASettingThatHasChanged) {
    ASSERT_EQ(inBasin("settings apply Year=2024").status, 0);
    const auto found = textsOf(verified());
    EXPECT_THAT(found, ElementsAre("Year: cropet, eff, irr, kc, nir, ppt, refet ran with "
                                   "Year=2023, and the settings now say 2024"));
    EXPECT_EQ(inBasin("verify").status, 1);
    EXPECT_EQ(run("verify --bands 0 basin/output").status,
              0);  // on its own the folder is of one piece
}

TEST_F(Records, VerifyPassesOverASettingThatNoNumberDependsOn) {
    const std::string shown = record("ppt").at("settings").at("ShowMonitor");
    ASSERT_EQ(
        inBasin("settings apply ShowMonitor=" + std::string(shown == "true" ? "false" : "true"))
            .status,
        0);
    EXPECT_TRUE(verified().at("clean"));
}

TEST_F(Records, VerifyFindsAStepThatWasRepeatedOnOtherSettings) {
    ASSERT_EQ(inBasin("--quiet run ppt").status, 0);
    EXPECT_THAT(textsOf(verified()),
                AllOf(Contains(HasSubstr("nir read another run of ppt than the last one")),
                      Contains(HasSubstr("irr read another run of ppt than the last one"))));
    ASSERT_EQ(inBasin("settings apply PrecipitationMethod=PRISM_REF").status, 0);
    ASSERT_EQ(inBasin("--quiet run ppt").status, 0);
    EXPECT_THAT(textsOf(json::parse(run("--json verify --bands 0 basin/output").output)),
                Contains(HasSubstr("PrecipitationMethod=PRISM_REF (ppt)")));
}

TEST_F(Records, VerifyTellsADamagedRecordAndNone) {
    const std::string path = basin("output/velmora_record_kc.json");
    const std::string whole = test::contentOf(path);
    test::write(path, whole.substr(0, whole.size() / 2));
    EXPECT_THAT(textsOf(verified()),
                AllOf(Contains(HasSubstr("velmora_record_kc.json: cannot be understood")),
                      Contains(HasSubstr("cropet read grids of kc, of which there is no record"))));
    // One byte that JSON has no objection to.
    std::string changed = whole;
    changed[changed.find("\"began\": \"2") + 13] ^= 1;
    ASSERT_TRUE(json::accept(changed));
    test::write(path, changed);
    EXPECT_THAT(textsOf(verified()), Contains(HasSubstr("velmora_record_kc.json: has been changed "
                                                        "since its run wrote it")));
    std::filesystem::create_directory(folder + "/empty");
    const Outcome none = run("verify empty");
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.told, HasSubstr("holds no record of a run"));
}

TEST_F(Records, AMovedFolderStillVerifies) {
    std::filesystem::rename(basin("output"), folder + "/moved");
    const Outcome found = run("verify --bands 1 moved");
    EXPECT_EQ(found.status, 0) << found.output;
}

TEST_F(Records, ASealIsCheckedBySha256sum) {
    const Outcome sealed = inBasin("seal");
    ASSERT_EQ(sealed.status, 0) << sealed.output << sealed.told;
    const std::string check =
        "cd " + basin("output") + " && sha256sum --quiet -c velmora_seal.sha256 2>/dev/null";
    EXPECT_EQ(std::system(check.c_str()), 0);
    EXPECT_THAT(test::contentOf(basin("output/velmora_seal.sha256")),
                AllOf(HasSubstr("  velmora_record_irr.json\n"), HasSubstr("  StatIRR.dbf\n"),
                      HasSubstr("  RefET_Jul_2/w001001.adf\n")));
    withOneByteChanged(basin("output/RefET_Jul_2/w001001.adf"),
                       [&] { EXPECT_NE(std::system(check.c_str()), 0); });
    std::filesystem::remove(basin("output/StatIRR.dbf"));
    EXPECT_EQ(inBasin("seal").status, 1);
}

}  // namespace
}  // namespace velmora
