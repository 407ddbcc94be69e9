// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hosts/results/report/small_maps.h"

namespace velmora {

// The months of which the last run of reference ET made grids of flags as maps, each cell in the
// colour of the gravest of its flags; without such grids a sentence how to get them. Throws
// PlatformError when a grid cannot be read.
std::string qualityMaps(IPlatform& platform, const RunSettings& settings, SmallMaps& maps);

}  // namespace velmora
