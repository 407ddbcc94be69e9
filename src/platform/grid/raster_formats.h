// SPDX-License-Identifier: MIT
// Which files are rasters: one list of endings and of the formats behind them, for
// steps and hosts. Formats that fetch
// what they show from elsewhere (VRT, WMS ...) are none of them, nor are pictures.
#pragma once

#include <string>
#include <vector>

namespace velmora::platform {

// Endings of raster files, in small letters, without the dot.
const std::vector<std::string>& rasterEndings();
// Whether the path has one of these endings, in capitals or not.
bool hasRasterEnding(const std::string& path);

// Whether the path is an ESRI grid, which is a folder. Throws PlatformError when the system cannot
// tell.
bool isGridFolder(const std::string& path);
// Whether the path is what a user takes for a raster: a grid folder, or a file with one of the
// endings. What the system cannot tell of is none.
bool isRasterDataset(const std::string& path);

// The names of GDAL's drivers that may open a raster, with a null at the end.
const char* const* rasterDrivers();

// Throws PlatformError for a path that GDAL would take for something else than a file or folder.
void requireLocalPath(const std::string& path);

}  // namespace velmora::platform
