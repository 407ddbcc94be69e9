// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "gis/rasters.h"

namespace velmora::platform {

// Band 0 of a raster of the formats of raster_formats.h, its scale and offset applied. Throws
// PlatformError when it cannot be opened or is cut short, or when its cells are not square or not
// aligned with the axes.
RasterPtr openGdalRaster(const std::string& path);

}  // namespace velmora::platform
