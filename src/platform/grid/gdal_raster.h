// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "gis/rasters.h"

namespace velmora::platform {

// Quiet GDAL's own printing; its last message goes into our errors. Called once per process.
void initialiseGdal();
// GDAL's last error message, or `otherwise` when there is none.
std::string gdalMessage(const std::string& otherwise);

// Band 0 of any raster that GDAL opens, its scale and offset applied. Throws PlatformError when it
// cannot be opened, or when its cells are not square or not aligned with the axes.
RasterPtr openGdalRaster(const std::string& path);

// Writes the raster as a Cloud Optimized GeoTIFF, in the place of an older file when it is whole.
void exportGeoTiff(const IRaster& raster, const std::string& path);

}  // namespace velmora::platform
