// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gis/projection.h"
#include "gis/rasters.h"

namespace velmora {

// The values of the cells that hold the points, a point on a border in the right or lower cell;
// nothing outside the raster and where a cell has no data. The points are in `crs` (WKT); a raster
// without a coordinate system is taken to be in it. Throws PlatformError when a point has no image
// in the raster's system or a cell cannot be read.
std::vector<std::optional<double>> cellValuesAt(const IRaster& raster,
                                                const std::vector<Point>& points,
                                                const std::string& crs,
                                                ISpatialReferenceFactory& spatialReferences);

}  // namespace velmora
