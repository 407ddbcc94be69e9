// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "check/input_check.h"
#include "gis/grid_geometry.h"

namespace velmora {

// The findings about the keys of the zones: long ones, which look alike in zone tables, and those
// that stand more than once. Throws PlatformError when there is no such field.
std::vector<Finding> checkZoneKeys(const ITable& zones, const std::string& field);

// The findings about where the zones lie: zones that hold no centre of the run's cells and so have
// no row in zone tables, and land that more than one zone claims. Throws PlatformError.
std::vector<Finding> checkZoneCells(IPlatform& platform, const RunSettings& settings,
                                    const GridGeometry& run);

}  // namespace velmora
