// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "gis/rasters.h"

namespace velmora::cli {

// Draws a grid as a PNG: the two-colour ramp of the map layers stretched from the smallest to the
// largest value, a legend, and a scale bar. Throws PlatformError when the file cannot be written or
// no cell has data.
void drawGridPicture(const IRaster& raster, const std::string& title, const std::string& file);

}  // namespace velmora::cli
