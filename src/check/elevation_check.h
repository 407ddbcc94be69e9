// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "check/input_check.h"

namespace velmora {

// Compares the elevations of the stations with the DEM under them. An error when most disagree and
// would agree in another unit (feet for metres shifts every temperature), a warning when they
// disagree in any unit. Says nothing where stations or DEM cannot be read: other checks do.
std::vector<Finding> checkStationElevations(IPlatform& platform, const RunSettings& settings,
                                            const IFeatureClass& stations,
                                            const GridGeometry& domain);

}  // namespace velmora
