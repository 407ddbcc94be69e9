// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "gis/analysis.h"

namespace velmora::platform {

// Stations at equal x and y become one, with the mean of their values; all by rising x, then y.
// The order of the samples changes nothing: the values of one place are added by rising value.
std::vector<Sample> mergedCoincident(std::vector<Sample> samples);

}  // namespace velmora::platform
