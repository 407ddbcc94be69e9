// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "gis/rasters.h"

namespace velmora::platform {

// Quiet GDAL's own printing; its last message goes into our errors. Called once per process.
void initialiseGdal();
// GDAL's last error message, or `otherwise` when there is none.
std::string gdalMessage(const std::string& otherwise);

// Band 0 of a raster of the formats of raster_formats.h, its scale and offset applied. Throws
// PlatformError when it cannot be opened or is cut short, or when its cells are not square or not
// aligned with the axes.
RasterPtr openGdalRaster(const std::string& path);

// Writes the raster as a Cloud Optimized GeoTIFF, in the place of an older file when it is whole
// and reads back as it was written.
void exportGeoTiff(const IRaster& raster, const std::string& path);

}  // namespace velmora::platform
