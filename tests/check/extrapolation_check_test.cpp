// SPDX-License-Identifier: MIT
#include "check/extrapolation_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "check/finding_groups.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

struct ExtrapolationCheck : testing::Test {
    test::MemoryRun f;
    std::vector<std::string> lines(const CheckScope& scope = {}) {
        return findingLines(checkInputs(f.application.platform(), f.settings, scope));
    }
};

// Stations from 1300 to 2155 m.
TEST_F(ExtrapolationCheck, HowFarTheGroundLiesBeyondTheStations) {
    f.makeDem([](int, int row) { return row < 7 ? 2400.0F : row == 20 ? 1250.0F : 1500.0F; });
    EXPECT_THAT(lines(),
                Contains("note: " + f.folder.file("dem") +
                         ": 33 % of the modelling extent lies above the highest station (2155 m), "
                         "by up to 245 m, 4.8 % of the modelling extent lies below the lowest "
                         "station (1300 m), by up to 50 m: temperatures are extrapolated there"));
    f.settings.SiteElevationUnit = "Feet";  // 396 to 657 m
    EXPECT_THAT(lines(),
                Contains(HasSubstr(
                    "100 % of the modelling extent lies above the highest station (657 m)")));
    EXPECT_THAT(lines(inputsOfStep("ppt")), Not(Contains(HasSubstr("highest station"))));
}

TEST_F(ExtrapolationCheck, GroundWithinTheStationsIsNotTold) {
    f.makeDem([](int column, int) { return column < 9 ? 1300.0F : 2155.0F; });
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("modelling extent lies"))));
}

TEST_F(ExtrapolationCheck, TrendsThatAreChance) {
    f.makeWeather(f.stations(), [](const std::string& p, const test::Station& s, int m) {
        if (p == "TD_" && m == 7) return FieldValue(3.0 + std::stoi(s.name.substr(1)) % 2);
        return test::MemoryRun::usualWeather(p, s, m);
    });
    const auto trend = "the trend over elevation is not significant (5 %) in ";
    EXPECT_THAT(lines(), Contains(HasSubstr("TD_...: " + std::string(trend) + "Jul: ")));
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("TM_...: " + std::string(trend)))));
    f.settings.HasTdew = false;
    EXPECT_THAT(lines(), Not(Contains(HasSubstr(trend))));
}

}  // namespace
}  // namespace velmora
