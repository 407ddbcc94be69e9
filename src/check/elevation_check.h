// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "check/input_check.h"

namespace velmora {

// Compares the elevations of the stations with the DEM under them. A warning when most disagree,
// which names the unit in which they would agree (feet for metres shifts every temperature). Says
// nothing where stations or DEM cannot be read: other checks do.
std::vector<Finding> checkStationElevations(IPlatform& platform, const RunSettings& settings,
                                            const IFeatureClass& stations,
                                            const GridGeometry& domain);

}  // namespace velmora
