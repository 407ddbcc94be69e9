// SPDX-License-Identifier: MIT
#include "settings/run_choices.h"

#include <gtest/gtest.h>

#include <array>

namespace velmora::test {
namespace {

TEST(RunChoices, TakeTheTextsThatTheFormShows) {
    RunSettings s;
    s.DemUnit = "Feet";
    s.SiteElevationUnit = "Meters";
    s.TemperatureUnit = "Degree F";
    s.PrecipitationMethod = "PRISM_REF";
    s.TimeStep = "Daily";
    s.RefETMethod = "4";
    EXPECT_EQ(demUnit(s), LengthUnit::feet);
    EXPECT_EQ(siteElevationUnit(s), LengthUnit::metres);
    EXPECT_EQ(temperatureUnit(s), TemperatureUnit::fahrenheit);
    EXPECT_EQ(precipitationMethod(s), PrecipitationMethod::reference);
    EXPECT_EQ(timeStep(s), TimeStep::daily);
    EXPECT_EQ(refEtMethod(s), RefEtMethod::hargreaves);

    s.DemUnit = "Meters";
    s.SiteElevationUnit = "Feet";
    s.TemperatureUnit = "Degree C";
    s.PrecipitationMethod = "EDK";
    s.TimeStep = "Monthly";
    EXPECT_EQ(demUnit(s), LengthUnit::metres);
    EXPECT_EQ(siteElevationUnit(s), LengthUnit::feet);
    EXPECT_EQ(temperatureUnit(s), TemperatureUnit::celsius);
    EXPECT_EQ(precipitationMethod(s), PrecipitationMethod::detrended);
    EXPECT_EQ(timeStep(s), TimeStep::monthly);
}

TEST(RunChoices, AnUnknownTextIsTheMetricUnitAndNoMethod) {
    for (const char* text : {"", "feet", "Feet ", "EDK,", "monthly", "7", "degree f"}) {
        RunSettings s;
        s.DemUnit = s.SiteElevationUnit = s.TemperatureUnit = text;
        s.PrecipitationMethod = s.TimeStep = s.RefETMethod = text;
        EXPECT_EQ(demUnit(s), LengthUnit::metres) << text;
        EXPECT_EQ(siteElevationUnit(s), LengthUnit::metres) << text;
        EXPECT_EQ(temperatureUnit(s), TemperatureUnit::celsius) << text;
        EXPECT_EQ(precipitationMethod(s), PrecipitationMethod::none) << text;
        EXPECT_EQ(timeStep(s), TimeStep::none) << text;
        EXPECT_EQ(refEtMethod(s), RefEtMethod::none) << text;
    }
}

TEST(RunChoices, HaveTheirStoredTexts) {
    EXPECT_STREQ(textOf(LengthUnit::metres), "Meters");
    EXPECT_STREQ(textOf(LengthUnit::feet), "Feet");
    EXPECT_STREQ(textOf(TemperatureUnit::celsius), "Degree C");
    EXPECT_STREQ(textOf(TemperatureUnit::fahrenheit), "Degree F");
    EXPECT_STREQ(textOf(PrecipitationMethod::none), "");
    EXPECT_STREQ(textOf(PrecipitationMethod::detrended), "EDK");
    EXPECT_STREQ(textOf(PrecipitationMethod::reference), "PRISM_REF");
    EXPECT_STREQ(textOf(TimeStep::none), "");
    EXPECT_STREQ(textOf(TimeStep::monthly), "Monthly");
    EXPECT_STREQ(textOf(TimeStep::daily), "Daily");
}

TEST(RunChoices, TheMethodIsTheNumberThatItsTextBeginsWith) {
    RunSettings s;
    const std::array methods = {RefEtMethod::asceTall,      RefEtMethod::asceShort,
                                RefEtMethod::fao56,         RefEtMethod::hargreaves,
                                RefEtMethod::blaneyCriddle, RefEtMethod::priestleyTaylor};
    for (int number = 1; number <= 6; ++number) {
        s.RefETMethod = std::to_string(number);
        EXPECT_EQ(refEtMethod(s), methods[static_cast<std::size_t>(number - 1)]) << number;
        s.RefETMethod += ":  with its title";
        EXPECT_EQ(refEtMethod(s), methods[static_cast<std::size_t>(number - 1)]) << number;
    }
}

TEST(RunChoices, AFootIsThreeTenthsOfAMetreAndABit) {
    EXPECT_EQ(metresIn(LengthUnit::metres), 1);
    EXPECT_EQ(metresIn(LengthUnit::feet), 0.3048);
}

}  // namespace
}  // namespace velmora::test
