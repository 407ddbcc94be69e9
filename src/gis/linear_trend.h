// SPDX-License-Identifier: MIT
// The straight line that takes the effect of elevation out of station values and puts it back over
// the DEM. Temperatures and precipitation use the same one.
#pragma once

#include <optional>
#include <span>

namespace velmora {

struct ElevationPair {
    double elevation = 0;  // metres
    double value = 0;
};

// value = a + b * elevation
struct LinearTrend {
    double a = 0;
    double b = 0;
};

// Ordinary least squares over the n pairs:
//   b = (n Sxy - Sx Sy) / (n Sxx - Sx^2),  a = (Sy - b Sx) / n.
// Throws PlatformError for fewer than two pairs, or when all stand at one elevation; the text goes
// on after a count of stations.
LinearTrend fitLinearTrend(std::span<const ElevationPair> pairs);

// The share of the values' variance that the line explains, 0 to 1; nothing for values without
// variance.
std::optional<double> rSquared(std::span<const ElevationPair> pairs, const LinearTrend& trend);

}  // namespace velmora
