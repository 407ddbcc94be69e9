// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "gis/analysis.h"

namespace velmora::platform {

// Stations at equal x and y become one, with the mean of their values, in the place of the first.
std::vector<Sample> mergedCoincident(const std::vector<Sample>& samples);

}  // namespace velmora::platform
