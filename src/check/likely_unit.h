// SPDX-License-Identifier: MIT
// In which other unit the values of a quantity would be likely, where they are not in their own.
#pragma once

#include <string>
#include <vector>

namespace velmora {

// The value that half of them exceed. They are one at least.
double middleOf(std::vector<double> values);

// The unit in which radiation must be, of which the middle of all values is `share` times the
// extraterrestrial radiation when they are taken as MJ m-2 d-1: "W/m2 (times 0.0864)"; "" where the
// share is possible, or in no known unit.
std::string likelyRadiationUnit(double share);

// The same of the wind, m/s, with the middle of the monthly means at 2 m.
std::string likelyWindUnit(double middle);

// The same of monthly precipitation, inches.
std::string likelyPrecipitationUnit(double middle);

// Whether maximum temperatures of a month, whose middle is given, look like the other unit.
// `summer` and `winter` tell of the month beyond 25 degrees of latitude, neither of any other.
bool looksLikeFahrenheit(double celsius, bool winter);
bool looksLikeCelsius(double fahrenheit, bool summer);

}  // namespace velmora
