// SPDX-License-Identifier: MIT
#include "refet/equations/solar_radiation.h"

#include <cmath>

#include "refet/equations/failure.h"

namespace velmora {

namespace {

constexpr double kPi = 3.14159265358979;  // 15 digits, as designed
constexpr double kTwoPi = 6.28318530717958;

}  // namespace

double ArcCos(double x) {
    if (!(std::fabs(x) < 1)) throw EquationError("ArcCos of a number outside -1 to 1");
    return std::atan(-x / std::sqrt(1 - x * x)) + 2 * std::atan(1.0);
}

SunPosition sunOf(double latitude, const Date& date, const Conventions& conventions) {
    const int J = dayOfYear(date, conventions);
    const double phi = latitude * kPi / 180;
    const int N = conventions.calendarYears || date.year % 4 == 0 ? 365 : 366;
    SunPosition sun;
    sun.dr = 1 + 0.033 * std::cos(kTwoPi * J / N);
    sun.delta = 0.409 * std::sin(kTwoPi * J / N - 1.39);
    sun.omega = ArcCos(-std::tan(phi) * std::tan(sun.delta));
    return sun;
}

double ExtraterrestrialRadiation(double latitude, const Date& date,
                                 const Conventions& conventions) {
    const auto [dr, delta, omega] = sunOf(latitude, date, conventions);
    const double phi = latitude * kPi / 180;
    return (24 / kPi) * 4.92 * dr *
           (omega * std::sin(phi) * std::sin(delta) +
            std::cos(phi) * std::cos(delta) * std::sin(omega));
}

}  // namespace velmora
