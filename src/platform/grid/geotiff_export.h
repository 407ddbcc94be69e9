// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "gis/rasters.h"

namespace velmora::platform {

// Writes the raster as a Cloud Optimized GeoTIFF, in the place of an older file when it is whole
// and reads back as it was written. Throws PlatformError.
void exportGeoTiff(const IRaster& raster, const std::string& path);

}  // namespace velmora::platform
