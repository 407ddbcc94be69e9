// SPDX-License-Identifier: MIT
#include "refet/equations/blaney_criddle.h"

#include <array>
#include <cmath>

#include "refet/equations/energy_balance.h"
#include "refet/equations/failure.h"
#include "refet/equations/solar_radiation.h"

namespace velmora {

namespace {

// The day whose share of daylight stands for the month, and the days that the month counts.
// December's day is not in the middle of the month; kept as designed.
struct MonthDay {
    std::size_t day;
    int length;
};
constexpr std::array<MonthDay, 12> kMonthDays = {{{16, 31},
                                                  {45, 28},
                                                  {75, 31},
                                                  {105, 30},
                                                  {136, 31},
                                                  {166, 30},
                                                  {197, 31},
                                                  {228, 31},
                                                  {258, 30},
                                                  {289, 31},
                                                  {319, 30},
                                                  {340, 31}}};

double fahrenheit(double celsius) { return 9.0 / 5 * celsius + 32; }

}  // namespace

double MonthlyDaylightPercentage(double& latitude, int month) {
    latitude = 2 * latitude * 3.1415926 / 360;
    std::array<float, 366> hours{};  // by day of the year; day 0 stays 0
    float sum = 0;
    for (std::size_t J = 1; J <= 365; ++J) {
        const auto delta = static_cast<float>(
            0.4093 * std::sin(6.2831852 * (284.0 + static_cast<double>(J)) / 365));
        const auto omega =
            static_cast<float>(ArcCos(-std::tan(latitude) * std::tan(static_cast<double>(delta))));
        hours[J] = static_cast<float>(static_cast<double>(omega) * 24 / 3.1415926);
        sum += hours[J];
    }
    if (month < 1 || month > 12) return 0;
    const MonthDay& chosen = kMonthDays[static_cast<std::size_t>(month - 1)];
    const float share = hours[chosen.day] / sum;
    return static_cast<double>(share) * chosen.length * 100;
}

double climaticCoefficient(double fahrenheit, const Conventions& conventions) {
    if (conventions.climaticFloor && fahrenheit < 36) return 0.30;
    return 0.0173 * fahrenheit - 0.314;
}

double blaneyCriddle(double Tmax, double Tmin, double p, const Conventions& conventions) {
    const double TmaxF = fahrenheit(Tmax);
    const double TminF = fahrenheit(Tmin);
    const double t = Tmin == kMissing ? TmaxF : (TminF + TmaxF) * 0.5;
    const double kt = climaticCoefficient(t, conventions);
    return finite(kt * t * p / 100, "Blaney-Criddle has no value");
}

}  // namespace velmora
