// SPDX-License-Identifier: MIT
// `velmora demo`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/support/command_fixture.h"

namespace velmora {
namespace {

using test::Command;
using test::Outcome;
using testing::HasSubstr;
using testing::Not;

TEST_F(Command, TheDemoMakesInputsAlone) {
    const Outcome made = run("demo basin --inputs-only");
    ASSERT_EQ(made.status, 0) << made.output;
    EXPECT_TRUE(std::filesystem::exists(folder + "/basin/stations.shp"));
    EXPECT_TRUE(std::filesystem::exists(folder + "/basin/settings/Zav.inf"));
    EXPECT_TRUE(std::filesystem::is_empty(folder + "/basin/output"));
    EXPECT_EQ(run("demo basin/ --inputs-only").status, 0);  // its own is made anew
    // A copy to work on is somebody's own, and so is everything else.
    std::filesystem::copy(folder + "/basin", folder + "/mine",
                          std::filesystem::copy_options::recursive);
    test::write(folder + "/mine/kc.dbf", "my own");
    const Outcome refused = run("demo mine");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.told, HasSubstr("velmora: " + folder + "/mine is not empty"));
    EXPECT_EQ(test::contentOf(folder + "/mine/kc.dbf"), "my own");
    EXPECT_EQ(run("demo . --inputs-only").status, 1);
}

TEST_F(Command, TheDemoMakesAYearOfGridsByEitherMethod) {
    const Outcome made = run("--quiet demo basin");
    ASSERT_EQ(made.status, 0) << made.output;
    EXPECT_THAT(made.output, HasSubstr("Reference ET of the sample basin, inches"));
    for (const char* month :
         {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"}) {
        EXPECT_TRUE(
            std::filesystem::exists(folder + "/basin/output/RefET_" + month + "_2/hdr.adf"));
        EXPECT_TRUE(std::filesystem::exists(folder + "/basin/output/PPT_" + month + "/hdr.adf"));
    }
    EXPECT_THAT(made.output, HasSubstr("Precipitation of the sample basin, inches"));
    EXPECT_THAT(made.output, HasSubstr("message: Kc-Maps have been generated successfully"));
    EXPECT_THAT(made.output, HasSubstr("O'Dell Creek"));
    EXPECT_TRUE(std::filesystem::exists(folder + "/basin/output/StatCET.dbf"));
    EXPECT_TRUE(std::filesystem::exists(folder + "/basin/output/ET_Jul_2/hdr.adf"));
    EXPECT_TRUE(std::filesystem::exists(folder + "/basin/PPT_Jul.png"));
    EXPECT_TRUE(std::filesystem::exists(folder + "/basin/RefET_Jul_2.png"));
    const auto july =
        nlohmann::json::parse(run("--json grid stats basin/output/RefET_Jul_2").output).at(0);
    EXPECT_EQ(july.at("cells"), 250 * 300);
    EXPECT_GT(july.at("mean").get<double>(), 6);  // inches; a dry mountain valley in July
    EXPECT_LT(july.at("mean").get<double>(), 10);
    const auto dem = nlohmann::json::parse(run("--json grid stats basin/dem").output).at(0);
    EXPECT_NEAR(dem.at("minimum").get<double>(), 1200, 0.1);
    EXPECT_NEAR(dem.at("maximum").get<double>(), 3400, 0.1);
    EXPECT_EQ(run("--settings-folder basin/settings check").status, 0);
    EXPECT_EQ(
        run("--settings-folder basin/settings settings apply PrecipitationMethod=PRISM_REF").status,
        0);
    EXPECT_EQ(run("--settings-folder basin/settings check").status, 0);
    EXPECT_EQ(run("--settings-folder basin/settings run ppt").status, 0);
    EXPECT_EQ(run("settings show").status, 1);  // the user's own settings are left alone
}

}  // namespace
}  // namespace velmora
