// SPDX-License-Identifier: MIT
#pragma once

#include "gis/projection.h"
#include "gis/rasters.h"

namespace velmora::platform {

// The raster on the cells of `geometry`: each cell takes the value of the source cell that holds
// its centre, transformed when the two coordinate systems differ. A raster without a coordinate
// system is taken to be in that of `geometry`. The raster itself is returned when its cells are the
// same.
RasterPtr sampledOn(RasterPtr source, const GridGeometry& geometry,
                    ISpatialReferenceFactory& spatialReferences);

}  // namespace velmora::platform
