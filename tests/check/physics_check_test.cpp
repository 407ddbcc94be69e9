// SPDX-License-Identifier: MIT
// Weather that the sun, the air or the month do not allow, or that is in another unit.
#include "check/physics_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "check/finding_groups.h"
#include "check/likely_unit.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

struct PhysicsCheck : testing::Test {
    test::MemoryRun f;
    std::string weather = f.folder.file("weather.dbf") + ": ";

    // The usual weather, of one quantity something else.
    void make(const std::string& prefix,
              const std::function<FieldValue(const test::Station&, int, double usual)>& value) {
        f.makeWeather(f.stations(),
                      [&](const std::string& p, const test::Station& s, int m) {
                          const FieldValue usual = test::MemoryRun::usualWeather(p, s, m);
                          return p == prefix ? value(s, m, std::get<double>(usual)) : usual;
                      },
                      {"TM_", "TN_", "TD_", "SR_", "WS_", "P_"});
    }
    void scale(const std::string& prefix, double factor, double plus = 0) {
        make(prefix,
             [=](const test::Station&, int, double usual) { return usual * factor + plus; });
    }
    std::vector<std::string> lines(const CheckScope& scope = {}) {
        return findingLines(checkInputs(f.application.platform(), f.settings, scope));
    }
    std::size_t warnings() {
        const auto all = lines();
        return static_cast<std::size_t>(std::ranges::count_if(
            all, [](const std::string& line) { return line.starts_with("warning: "); }));
    }
};

TEST_F(PhysicsCheck, UsualWeatherIsNotTold) {
    scale("TM_", 1);
    EXPECT_EQ(warnings(), 0U) << testing::PrintToString(lines());
}

// 43.6 MJ at most above 40 degrees north in July.
TEST_F(PhysicsCheck, RadiationBeyondThatOfTheSun) {
    make("SR_", [](const test::Station& s, int m, double usual) {
        return s.name == "S3" && m == 7 ? 44.0 : s.name == "S4" && m == 6 ? 8.0 : usual;
    });
    EXPECT_THAT(lines(), Contains(StartsWith("warning: " + weather +
                                             "SR_Jul: S3: 44 MJ/m2/day is above the "
                                             "extraterrestrial radiation 4")));
    EXPECT_THAT(lines(), Contains(StartsWith("warning: " + weather +
                                             "SR_Jun: S4: 8 MJ/m2/day is below a fifth of the "
                                             "extraterrestrial radiation 4")));
    f.settings.HasSR = false;
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("extraterrestrial"))));
    f.settings.HasSR = true;
    f.settings.RefETMethod = "4";
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("extraterrestrial"))));
}

TEST_F(PhysicsCheck, RadiationInAnotherUnit) {
    scale("SR_", 1 / 0.0864);
    EXPECT_THAT(lines(), Contains(testing::AllOf(StartsWith("warning: " + weather + "SR_...: "),
                                                 HasSubstr("likely in W/m2: multiply"))));
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("is above the extraterrestrial"))));
    scale("SR_", 23.885);
    EXPECT_THAT(lines(), Contains(HasSubstr("likely in cal/cm2/day (langleys)")));
    scale("SR_", 0.27778);
    EXPECT_THAT(lines(), Contains(HasSubstr("likely in kWh/m2/day")));
}

TEST_F(PhysicsCheck, DewPointsAboveTheAir) {
    make("TD_", [](const test::Station& s, int m, double usual) {
        return m != 7 ? usual : s.name == "S3" ? 20.0 : s.name == "S4" ? 29.5 : usual;
    });
    EXPECT_THAT(lines(), Contains(StartsWith("warning: " + weather +
                                             "TD_Jul: S3: 20 is above the mean temperature 1")));
    EXPECT_THAT(lines(), Contains(StartsWith("warning: " + weather +
                                             "TD_Jul: S4: 29.5 is above the maximum temperature "
                                             "2")));
    f.settings.HasTdew = false;
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("is above the m"))));
}

TEST_F(PhysicsCheck, WindInAnotherUnitAndAtTwoMetres) {
    scale("WS_", 1);
    EXPECT_THAT(lines(), Contains(StartsWith("note: " + weather +
                                             "WS_...: is taken as the wind at 2 m: multiply")));
    scale("WS_", 3.6);
    EXPECT_THAT(lines(), Contains(testing::AllOf(StartsWith("warning: " + weather + "WS_...: "),
                                                 HasSubstr("it would be in km/h (divide"))));
    scale("WS_", 53.7);
    EXPECT_THAT(lines(), Contains(HasSubstr("it would be in miles per day (divide")));
    f.settings.HasWS = false;
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("it would be in"))));
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("at 2 m"))));
}

TEST_F(PhysicsCheck, TemperaturesInTheOtherUnit) {
    scale("TM_", 1.8, 32);
    EXPECT_THAT(lines(), Contains(HasSubstr("is TemperatureUnit=Degree F meant?")));
    f.settings.TemperatureUnit = "Degree F";
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("meant?"))));
    scale("TM_", 1);
    EXPECT_THAT(lines(), Contains(HasSubstr("is TemperatureUnit=Degree C meant?")));
    f.settings.BeginMonth = "Jan";  // deg F there may be so low
    f.settings.EndMonth = "Feb";
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("meant?"))));
    f.settings.TemperatureUnit = "Degree C";
    make("TM_", [](const test::Station&, int, double) { return 35.0; });
    EXPECT_THAT(lines(), Contains(HasSubstr("is TemperatureUnit=Degree F meant?")));
}

TEST_F(PhysicsCheck, PrecipitationInMillimetres) {
    scale("P_", 25.4);
    const std::string text =
        "inches per month is the middle of the values, which is not likely; "
        "it would be in millimetres";
    EXPECT_THAT(lines(), Contains(HasSubstr(text)));
    EXPECT_THAT(lines(inputsOfStep("ppt")), Contains(HasSubstr(text)));
    EXPECT_THAT(lines(inputsOfStep("refet")), Not(Contains(HasSubstr("P_"))));
    scale("P_", 1);
    EXPECT_THAT(lines(), Not(Contains(HasSubstr(text))));
}

// Without a coordinate system nothing is known of latitudes, and nothing said of what needs them.
TEST_F(PhysicsCheck, WithoutLatitudes) {
    const WeatherStations stations(f.application.platform(), f.settings, "TempTTT",
                                   f.geometry().crs);
    scale("SR_", 3);
    const auto told = [&](const std::string& crs) {
        return findingLines(checkPhysics(f.application.platform(), f.settings, stations, crs, {}));
    };
    EXPECT_THAT(told({}), Not(Contains(HasSubstr("SR_"))));
}

TEST(LikelyUnit, OfWinterAndSummerSharesAlike) {
    EXPECT_EQ(likelyRadiationUnit(0.2), "");
    EXPECT_EQ(likelyRadiationUnit(1), "");
    for (const double share : {0.4, 0.55, 0.7}) {
        EXPECT_THAT(likelyRadiationUnit(share * 11.574), StartsWith("W/m2")) << share;
        EXPECT_THAT(likelyRadiationUnit(share * 23.885), StartsWith("cal")) << share;
        if (share < 0.7) {
            EXPECT_THAT(likelyRadiationUnit(share * 0.27778), StartsWith("kWh")) << share;
        }
    }
    EXPECT_EQ(likelyRadiationUnit(2), "");  // in no known one
    EXPECT_EQ(likelyWindUnit(6.9), "");
    EXPECT_EQ(likelyPrecipitationUnit(7.9), "");
    EXPECT_EQ(middleOf({3, 1, 2}), 2);
}

}  // namespace
}  // namespace velmora
