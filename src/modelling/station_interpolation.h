// SPDX-License-Identifier: MIT
// How the steps interpolate between stations.
#pragma once

#include <vector>

#include "gis/analysis.h"

namespace velmora {

constexpr int kNearestStations = 12;
constexpr double kInverseDistancePower = 2.0;

enum class Estimator { inverseDistance, kriging };

struct Interpolated {
    RasterPtr raster;
    bool kriged = false;
};

// Where kriging has no surface, inverse distance weighting takes its place without a word. Throws
// PlatformError without samples.
Interpolated interpolate(IInterpolationOp& interpolation, Estimator estimator,
                         const std::vector<Sample>& samples);

}  // namespace velmora
