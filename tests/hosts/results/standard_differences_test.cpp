// SPDX-License-Identifier: MIT
// The papers' grids beside those of the method, from the command to the report's section.
#include "hosts/results/standard/standard_differences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "settings/stored_settings.h"
#include "tests/support/command_fixture.h"

namespace velmora {
namespace {

using test::Command;
using test::CropCommand;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

struct StandardDifferences : CropCommand {
    RunSettings settings() {
        return *storedSettings(crops.application.platform().files(), folder + "/config/velmora");
    }
    std::vector<StandardDifference> differences() {
        return standardDifferences(crops.application.platform(), settings());
    }
    double meanOf(const std::string& grid) {
        return nlohmann::json::parse(run("--json grid stats " + grid).results)[0]["mean"];
    }
};

TEST_F(StandardDifferences, AreThoseOfTheGridsByMonthAndZone) {
    ASSERT_EQ(apply("RefETMethod=4 BeginMonth=Oct EndMonth=Nov LandCover=land.shp "
                    "KcTable=crops.dbf Zones=zones.shp ZoneField=ZONE")
                  .status,
              0);
    EXPECT_THAT(differences(), IsEmpty());
    const auto ran = run("--json run refet --standard");
    ASSERT_EQ(ran.status, 0) << ran.output;
    const auto result = nlohmann::json::parse(ran.results);
    EXPECT_THAT(result["made"], Contains(EndsWith("/RefETstd_Oct_4")));
    EXPECT_THAT(ran.told, HasSubstr("note: RefETstd_Nov_4: by the papers' choices the mean is "));

    const auto all = differences();
    std::vector<std::pair<int, std::string>> keys;
    for (const StandardDifference& d : all) keys.emplace_back(d.month, d.zone);
    ASSERT_GT(keys.size(), 2U);
    EXPECT_EQ(keys[0], std::pair(10, std::string()));
    EXPECT_NE(keys[1].second, "");
    EXPECT_NEAR(all[0].ours, meanOf("RefET_Oct_4"), 1e-6);
    EXPECT_NEAR(all[0].papers, meanOf("RefETstd_Oct_4"), 1e-6);
    EXPECT_LT(all[0].difference(), 0);  // Hargreaves follows the sun: 366 days
    EXPECT_NEAR(all[0].difference() / all[0].ours, all[1].difference() / all[1].ours, 1e-4);

    const std::string html = standardSection(all);
    EXPECT_THAT(html, HasSubstr("<h2 id=\"standard\">"));
    EXPECT_THAT(html, HasSubstr("<th class=\"n\">Oct</th>"));
    EXPECT_THAT(html, HasSubstr("<td>" + keys[1].second + "</td>"));
    EXPECT_THAT(html, HasSubstr(" %)</td>"));
}

// A later run without them leaves the papers' grids of the one before, which belong to nothing.
TEST_F(StandardDifferences, OnlyGridsOfTheLastRunCount) {
    ASSERT_EQ(run("run refet --standard").status, 0);
    EXPECT_THAT(differences(), Not(IsEmpty()));
    ASSERT_EQ(run("run refet").status, 0);
    EXPECT_TRUE(std::filesystem::exists(folder + "/out/RefETstd_Jun_4"));
    EXPECT_THAT(differences(), IsEmpty());
    EXPECT_EQ(standardSection(differences()), "");
}

TEST_F(StandardDifferences, TheWholeGridStandsWithoutZones) {
    ASSERT_EQ(run("run refet --standard").status, 0);
    RunSettings without = settings();
    without.Zones.clear();
    const auto whole = standardDifferences(crops.application.platform(), without);
    ASSERT_EQ(whole.size(), 2U);
    EXPECT_EQ(whole[1].month, 7);
    without = settings();
    without.ZoneField = "NOFIELD";
    EXPECT_EQ(standardDifferences(crops.application.platform(), without).size(), 2U);
}

TEST(StandardSection, NamesEveryZoneAndEscapesIt) {
    const std::string html = standardSection({{6, "", 10, 2.0, 2.1},
                                              {6, "A<b", 6, 2.0, 2.2},
                                              {6, "C", 4, 0, 0.25},
                                              {7, "", 10, 3.0, 2.97},
                                              {7, "C", 4, 4.0, 4.0}});
    const auto row = [](const std::string& name, const std::string& june, const std::string& july) {
        return "<tr><td>" + name + "</td><td class=\"n\">" + june + "</td><td class=\"n\">" + july +
               "</td></tr>";
    };
    EXPECT_THAT(html, HasSubstr("<th class=\"n\">Jun</th><th class=\"n\">Jul</th></tr>"));
    EXPECT_THAT(html, HasSubstr(row("Mean of the method", "2.000", "3.000")));
    EXPECT_THAT(html, HasSubstr(row("By the papers", "2.100", "2.970")));
    EXPECT_THAT(html, HasSubstr(row("All cells", "+0.100 (+5.0 %)", "-0.030 (-1.0 %)")));
    EXPECT_THAT(html, HasSubstr(row("A&lt;b", "+0.200 (+10.0 %)", "&ndash;")));
    EXPECT_THAT(html, HasSubstr(row("C", "+0.250", "+0.000 (+0.0 %)")));
}

TEST_F(Command, StandardBelongsToReferenceEt) {
    ASSERT_EQ(apply().status, 0);
    const auto refused = run("run ppt --standard");
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.told, HasSubstr("--standard belongs to run refet and run all"));
    const auto all = run("run all --standard --only refet");
    EXPECT_EQ(all.status, 0) << all.output;
    EXPECT_TRUE(fixture.hasOutput("RefETstd_Jul_2"));
}

}  // namespace
}  // namespace velmora
