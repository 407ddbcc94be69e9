// SPDX-License-Identifier: MIT
// How the steps interpolate between stations.
#pragma once

#include <vector>

#include "gis/analysis.h"

namespace velmora {

constexpr int kNearestStations = 12;
constexpr double kInverseDistancePower = 2.0;

inline RasterPtr inverseDistanceSurface(IInterpolationOp& interpolation,
                                        const std::vector<Sample>& samples) {
    return interpolation.IDW(samples, kInverseDistancePower, kNearestStations);
}

// Kriging where it has a surface, else, without a word, inverse distance weighting. Throws
// PlatformError without samples.
RasterPtr krigedSurface(IInterpolationOp& interpolation, const std::vector<Sample>& samples);

}  // namespace velmora
