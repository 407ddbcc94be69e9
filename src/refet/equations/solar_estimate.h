// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>

namespace velmora {

// Solar radiation from the daily range of temperature, Ks sqrt(Tmax - Tmin) Ra (FAO-56 equation
// 50); a negative range counts as 0.
inline double solarRadiationFromRange(double Ks, double Tmax, double Tmin, double Ra) {
    return Ks * std::sqrt(std::max(0.0, Tmax - Tmin)) * Ra;
}

}  // namespace velmora
