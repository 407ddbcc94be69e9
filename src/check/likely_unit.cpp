// SPDX-License-Identifier: MIT
#include "check/likely_unit.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora {

namespace {

// Of the extraterrestrial radiation a month lets through at least a fifth and at most all. In
// monthly means it is 0.3 to 0.8.
constexpr double kLeastShare = 0.2;
constexpr double kUsualLow = 0.3;
constexpr double kUsualHigh = 0.85;
constexpr double kUsual = 0.55;

struct RadiationUnit {
    double inMegajoule;  // how many of them are 1 MJ m-2 d-1
    const char* text;
};
constexpr std::array kRadiationUnits = {
    RadiationUnit{11.574, "W/m2: multiply them by 0.0864"},
    RadiationUnit{23.885, "cal/cm2/day (langleys): multiply them by 0.04187"},
    RadiationUnit{0.27778, "kWh/m2/day: multiply them by 3.6"}};

constexpr double kStrongWind = 7;      // m/s; monthly means at 2 m are 1 to 6
constexpr double kBeyondHours = 35;    // above what km/h or miles per hour would give
constexpr double kWettestMiddle = 8;   // inches per month: 2.4 m a year
constexpr double kHottest = 45;        // deg C, mean daily maximum of a month
constexpr double kHottestWinter = 32;  // the same of a winter month beyond 25 degrees
constexpr double kColdestSummer = 45;  // deg F, of a summer month

}  // namespace

double middleOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<long>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

std::string likelyRadiationUnit(double share) {
    if (share >= kLeastShare && share <= 1) return {};
    std::string text;
    double farOff = kUsualHigh;
    for (const RadiationUnit& unit : kRadiationUnits) {
        const double would = share / unit.inMegajoule;
        if (would < kUsualLow || would > kUsualHigh) continue;
        if (std::fabs(would - kUsual) >= farOff) continue;
        farOff = std::fabs(would - kUsual);
        text = unit.text;
    }
    return text;
}

std::string likelyWindUnit(double middle) {
    if (middle <= kStrongWind) return {};
    if (middle <= kBeyondHours) {
        return "km/h (divide them by 3.6) or miles per hour (multiply them by 0.447)";
    }
    return "miles per day (divide them by 53.7) or km per day (divide them by 86.4)";
}

std::string likelyPrecipitationUnit(double middle) {
    return middle <= kWettestMiddle ? std::string() : "millimetres: divide them by 25.4";
}

bool looksLikeFahrenheit(double celsius, bool winter) {
    return celsius > (winter ? kHottestWinter : kHottest);
}

bool looksLikeCelsius(double fahrenheit, bool summer) {
    return summer && fahrenheit < kColdestSummer;
}

}  // namespace velmora
