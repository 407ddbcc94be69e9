// SPDX-License-Identifier: MIT
// The papers' choices beside ours: each changes what it is to change, and nothing else.
#include "refet/equations/conventions.h"

#include <gtest/gtest.h>

#include "refet/equations/blaney_criddle.h"
#include "refet/equations/calendar.h"
#include "refet/equations/penman_monteith.h"
#include "refet/equations/priestley_taylor.h"
#include "refet/equations/soil_heat_flux.h"
#include "refet/equations/solar_estimate.h"
#include "refet/equations/solar_radiation.h"
#include "refet/refet_pass.h"

namespace velmora {
namespace {

constexpr double kNone = -9999;

TEST(Conventions, CalendarYearsHaveTheLeapDaysOfTheCalendar) {
    for (const auto& [year, days] : {std::pair{2000, 29}, {2004, 29}, {2015, 28}, {1900, 28}}) {
        EXPECT_EQ(daysInMonth(2, year, kPaperConventions), days) << year;
        EXPECT_EQ(daysInMonth(2, year, kOurConventions), DaysInMonth(2, year)) << year;
        EXPECT_EQ(representativeDay(2, year, kPaperConventions), days == 29 ? 15 : 14) << year;
        EXPECT_EQ(dayOfYear({31, 12, year}, kPaperConventions), days == 29 ? 366 : 365) << year;
        EXPECT_EQ(dayOfYear({1, 3, year}, kPaperConventions), days + 32) << year;
    }
    for (int month = 1; month <= 12; ++month) {
        if (month == 2) continue;
        EXPECT_EQ(daysInMonth(month, 2015, kPaperConventions), DaysInMonth(month, 2015));
        EXPECT_EQ(representativeDay(month, 2015, kPaperConventions),
                  representativeDay(month, 2015));
        EXPECT_EQ(dayOfYear({16, month, 2015}, kOurConventions), DayOfYear(16, month, 2015));
    }
}

// In a year of which ours count 365 days too, the sun is the same to the bit.
TEST(Conventions, TheSunDiffersInCommonYearsAlone) {
    for (int month = 1; month <= 12; ++month) {
        const Date leap{16, month, 2004};
        const Date common{16, month, 2015};
        EXPECT_EQ(ExtraterrestrialRadiation(43, leap),
                  ExtraterrestrialRadiation(43, leap, kPaperConventions));
        EXPECT_NE(ExtraterrestrialRadiation(43, common),
                  ExtraterrestrialRadiation(43, common, kPaperConventions));
    }
}

CellWeather winterDay(double Rs) { return {2, -6, -5, kMissing, kMissing, Rs, 2, 0, 1200}; }

TEST(Conventions, TheClearSkyRatioIsHeldAtThreeTenths) {
    const double Ra = 12;
    const double Rso = (0.75 + 2e-5 * 1200) * Ra;
    const double gamma = psychrometricConstant(1200);
    const auto Rnl = [&](double ratio, const Conventions& c) {
        return energyBalance(winterDay(ratio * Rso), Ra, gamma, 0.23, c).Rnl;
    };
    EXPECT_LT(Rnl(0.25, kOurConventions), 0);  // the surface gains
    EXPECT_GT(Rnl(0.25, kPaperConventions), 0);
    EXPECT_DOUBLE_EQ(Rnl(0.1, kPaperConventions), Rnl(0.3, kPaperConventions));
    EXPECT_DOUBLE_EQ(Rnl(0.1, kOurConventions), Rnl(0.25, kOurConventions));
    for (const double ratio : {0.31, 0.7, 1.2}) {
        EXPECT_EQ(Rnl(ratio, kOurConventions), Rnl(ratio, kPaperConventions)) << ratio;
    }
    const ReferenceCrop crop = referenceCrop(1);
    EXPECT_LT(penmanMonteith(winterDay(2), crop, Ra, gamma, 0.23, kPaperConventions),
              penmanMonteith(winterDay(2), crop, Ra, gamma, 0.23));
    EXPECT_LT(priestleyTaylor(winterDay(2), Ra, gamma, 0.23, kPaperConventions),
              priestleyTaylor(winterDay(2), Ra, gamma, 0.23));
}

TEST(Conventions, TheClimaticCoefficientHasAFloor) {
    EXPECT_EQ(climaticCoefficient(35.99, kPaperConventions), 0.30);
    EXPECT_EQ(climaticCoefficient(-20, kPaperConventions), 0.30);
    EXPECT_EQ(climaticCoefficient(36, kPaperConventions), climaticCoefficient(36));
    EXPECT_NEAR(climaticCoefficient(18.15), 0, 1e-4);
    EXPECT_NEAR(blaneyCriddle(-10, -10, 6.5, kPaperConventions), 0.30 * 14 * 6.5 / 100, 1e-12);
    EXPECT_LT(blaneyCriddle(-10, -10, 6.5), 0);
}

TEST(Conventions, OursIsFiveNinthsOfThePapersHeatFlux) {
    EXPECT_NEAR(soilHeatFlux(10, 16, false), kHeatFluxOverTwoMonths * 6 * 5 / 9, 1e-12);
    EXPECT_NEAR(soilHeatFlux(10, 16, true), kHeatFluxOverOneMonth * 6 * 5 / 9, 1e-12);
}

// Two cells of a frosty, overcast February: one with negative depth, one without.
struct FrostyPass : testing::Test {
    CellTable table;
    FrostyPass() {
        using enum CellField;
        table.createRecords({0, 0, 1, 2});
        const auto fill = [&](CellField field, double first, double second) {
            table.writable(field)[0] = first;
            table.writable(field)[1] = second;
        };
        fill(Latitude, 44, 44);
        fill(Elevation, 3000, 1200);
        fill(TM, -10, 8);
        fill(TN, -26, -2);
        fill(TD, -5, -3);
        fill(SR, 6, 12);
        fill(WS, 3, 2);
        fill(GG, 0, 0);
    }
    std::vector<double> depths(RefEtMethod method, const Conventions& conventions) {
        calculateRefEt(table, elevationParts(table), method, {15, 2, 2015}, kNone, conventions);
        const auto values = table.values(CellField::RefET);
        return {values.begin(), values.end()};
    }
};

TEST_F(FrostyPass, NegativeDepthsAreCutByThePapersAlone) {
    EXPECT_LT(depths(RefEtMethod::asceShort, kOurConventions)[0], 0);
    EXPECT_EQ(depths(RefEtMethod::asceShort, kPaperConventions)[0], 0);
    EXPECT_GT(depths(RefEtMethod::asceShort, kPaperConventions)[1], 0);
    table.writable(CellField::TM)[0] = -16;  // below 0 deg F the papers' u is negative
    EXPECT_GT(depths(RefEtMethod::blaneyCriddle, kOurConventions)[0], 0);
    EXPECT_EQ(depths(RefEtMethod::blaneyCriddle, kPaperConventions)[0], 0);
}

TEST_F(FrostyPass, AFebruaryOfACommonYearHas28Days) {
    const double ours = depths(RefEtMethod::hargreaves, kOurConventions)[1];
    const double papers = depths(RefEtMethod::hargreaves, kPaperConventions)[1];
    const double sun = ExtraterrestrialRadiation(44, {15, 2, 2015}, kPaperConventions) /
                       ExtraterrestrialRadiation(44, {15, 2, 2015});
    EXPECT_NEAR(papers / ours, 28.0 / 29 * sun, 1e-12);
}

TEST_F(FrostyPass, RadiationIsEstimatedWithTheirSun) {
    estimateSolarRadiation(table, 0.16, {15, 2, 2015}, kNone, kPaperConventions);
    const double Ra = ExtraterrestrialRadiation(44, {15, 2, 2015}, kPaperConventions);
    EXPECT_EQ(table.values(CellField::SR)[1], solarRadiationFromRange(0.16, 8, -2, Ra));
}

}  // namespace
}  // namespace velmora
