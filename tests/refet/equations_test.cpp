// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "refet/equations/blaney_criddle.h"
#include "refet/equations/energy_balance.h"
#include "refet/equations/failure.h"
#include "refet/equations/hargreaves.h"
#include "refet/equations/penman_monteith.h"
#include "refet/equations/solar_radiation.h"

namespace velmora {
namespace {

TEST(ArcCos, HasNoClamp) {
    EXPECT_NEAR(ArcCos(0.5), std::acos(0.5), 1e-15);
    EXPECT_NEAR(ArcCos(-0.99), std::acos(-0.99), 1e-14);
    EXPECT_THROW(ArcCos(1), EquationError);
    EXPECT_THROW(ArcCos(-1), EquationError);
    EXPECT_THROW(ArcCos(1.5), EquationError);
    EXPECT_THROW(ArcCos(std::nan("")), EquationError);
}

TEST(ExtraterrestrialRadiation, DividesBy365InLeapYears) {
    // The same day number in both years; only the length of the year differs.
    const double leap = ExtraterrestrialRadiation(40, {14, 10, 2000});    // day 288
    const double common = ExtraterrestrialRadiation(40, {15, 10, 2001});  // day 288
    EXPECT_NEAR(leap, 22.47, 0.005);
    EXPECT_NEAR(common / leap - 1, 0.0084, 0.0002);
}

TEST(ExtraterrestrialRadiation, FailsInPolarNight) {
    EXPECT_THROW(ExtraterrestrialRadiation(80, {16, 12, 2001}), EquationError);
    EXPECT_THROW(ExtraterrestrialRadiation(80, {15, 6, 2001}), EquationError);
}

CellWeather july() { return {30, 14, 8, kMissing, kMissing, 25, 2, 0, 1500}; }

TEST(EnergyBalance, ClearnessIsClampedBothWays) {
    const double Ra = 40;
    const auto longwave = [&](double Rs) {
        CellWeather w = july();
        w.Rs = Rs;
        const EnergyBalance b = energyBalance(w, Ra, 0.057, 0.23);
        return (1 - 0.23) * (Rs == kMissing ? 0 : Rs) - b.Rn;
    };
    const double Rso = (0.75 + 2e-5 * 1500) * Ra;
    const double full = longwave(Rso);
    EXPECT_DOUBLE_EQ(longwave(Rso * 1.2), full);
    EXPECT_NEAR(longwave(0.1 * Rso), full * (1.35 * 0.25 - 0.35), 1e-9);
    EXPECT_NEAR(longwave(kMissing), full * -0.0125, 1e-9);  // no radiation: ratio 0.25
}

TEST(EnergyBalance, DewPointComesBeforePressureBeforeHumidity) {
    CellWeather w = july();
    w.ea = 1.2;
    w.RH = 50;
    EXPECT_EQ(energyBalance(w, 40, 0.057, 0.23).ea, SaturationVapourPressure(8));
    w.Tdew = kMissing;
    EXPECT_EQ(energyBalance(w, 40, 0.057, 0.23).ea, 1.2);
    w.ea = kMissing;
    EXPECT_EQ(energyBalance(w, 40, 0.057, 0.23).ea, VapourPressureFromHumidity(30, 14, 50));
}

TEST(EnergyBalance, FailuresAreSeen) {
    CellWeather w = july();
    EXPECT_THROW(energyBalance(w, 0, 0.057, 0.23), EquationError);
    w.Tdew = kMissing;
    w.ea = -0.1;
    EXPECT_THROW(energyBalance(w, 40, 0.057, 0.23), EquationError);
    EXPECT_THROW(psychrometricConstant(50000), EquationError);
    w = july();
    w.Tdew = -237.3;
    EXPECT_THROW(energyBalance(w, 40, 0.057, 0.23), EquationError);
}

TEST(PenmanMonteith, CropConstants) {
    EXPECT_EQ(referenceCrop(1).Cn, 900);
    EXPECT_EQ(referenceCrop(1).Cd, 0.34);
    for (const int tall : {0, 2, -1}) {
        EXPECT_EQ(referenceCrop(tall).Cn, 1600);
        EXPECT_EQ(referenceCrop(tall).Cd, 0.38);
    }
}

TEST(Hargreaves, IsZeroBelowAndAtTheMinimum) {
    EXPECT_EQ(hargreaves1985(10, 12, 30), 0);
    EXPECT_EQ(hargreaves1985(12, 12, 30), 0);
    EXPECT_GT(hargreaves1985(14, 12, 30), 0);
}

TEST(BlaneyCriddle, LeavesTheLatitudeInRadians) {
    double latitude = 40;
    MonthlyDaylightPercentage(latitude, 7);
    EXPECT_NEAR(latitude, 0.69813170, 1e-7);
    latitude = 40;
    EXPECT_EQ(MonthlyDaylightPercentage(latitude, 13), 0);
    latitude = 70;
    EXPECT_THROW(MonthlyDaylightPercentage(latitude, 1), EquationError);
}

TEST(BlaneyCriddle, MissingMinimumLeavesTheMaximum) {
    // t = 86 F: kt = 1.1738, u = 1.1738 * 86 * 10 / 100.
    EXPECT_NEAR(blaneyCriddle(30, kMissing, 10), 10.09468, 1e-5);
    EXPECT_NEAR(blaneyCriddle(30, 30, 10), 10.09468, 1e-5);
    EXPECT_EQ(blaneyCriddle(30, 10, 0), 0);
}

// Computed from the definition by another program, with the table of hours in single precision: the
// day that stands for each month, its length, and the digits of the constants all count.
TEST(BlaneyCriddle, DaylightOfEveryMonth) {
    const std::vector<std::pair<double, std::array<double, 12>>> expected = {
        {40.0,
         {6.710613518953323, 6.671331450343132, 8.301537693478167, 8.949610171839595,
          10.080851637758315, 10.155355324968696, 10.300488490611315, 9.586081374436617,
          8.389179361984134, 7.692961557768285, 6.672175833955407, 6.554077845066786}},
        {50.25,
         {5.884942261036485, 6.227501016110182, 8.218525629490614, 9.269481059163809,
          10.805506515316665, 11.06960722245276, 11.139362095855176, 10.07089763879776,
          8.462825557217002, 7.342043938115239, 5.965559743344784, 5.643702682573348}},
        {61.75,
         {4.162332403939217, 5.386523576453328, 8.06781540159136, 9.860795689746737,
          12.26211846806109, 13.089699670672417, 12.899245135486126, 10.9883927507326,
          8.59649945050478, 6.6916929092258215, 4.542619222775102, 3.668862779159099}},
    };
    for (const auto& [degrees, shares] : expected) {
        for (int month = 1; month <= 12; ++month) {
            double latitude = degrees;
            EXPECT_NEAR(MonthlyDaylightPercentage(latitude, month),
                        shares[static_cast<std::size_t>(month - 1)], 1e-12)
                << degrees << " " << month;
        }
    }
}

}  // namespace
}  // namespace velmora
