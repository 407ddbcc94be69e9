// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "check/input_check.h"
#include "gis/grid_geometry.h"

namespace velmora {

// The findings about what the precipitation run uses beside stations and weather table: its method,
// the unit of the DEM and the reference grids.
std::vector<Finding> checkPrecipitation(IPlatform& platform, const RunSettings& settings,
                                        const std::optional<GridGeometry>& geometry);

}  // namespace velmora
