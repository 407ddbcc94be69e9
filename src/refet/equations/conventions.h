// SPDX-License-Identifier: MIT
// The choices in which the reference ET methods leave the papers that they follow, as values, so
// that the papers' can be computed beside ours. docs/departures.md tells what each is worth.
#pragma once

namespace velmora {

struct Conventions {
    // Leap years by the calendar and 365 days to the sun's course in every year (FAO-56 equations
    // 23 and 24); else both by the inverted rule.
    bool calendarYears = false;
    // Rs / Rso is not taken below this. ASCE-EWRI (2005), equation 18: 0.3.
    double lowestClearness = 0.25;
    // Blaney-Criddle's climatic coefficient is 0.30 below 36 deg F (TR-21).
    bool climaticFloor = false;
    // A depth below 0 is 0.
    bool cutAtZero = false;

    double depth(double value) const { return cutAtZero && value < 0 ? 0 : value; }
};

// Those of the six methods, and those of the papers.
inline constexpr Conventions kOurConventions{};
inline constexpr Conventions kPaperConventions{
    .calendarYears = true, .lowestClearness = 0.3, .climaticFloor = true, .cutAtZero = true};

}  // namespace velmora
