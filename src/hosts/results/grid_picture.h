// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "gis/files.h"
#include "gis/map_document.h"
#include "gis/rasters.h"

namespace velmora {

// The two-colour ramp in which the map shows a grid of that name, reference ET's for a grid of no
// product.
AlgorithmicColorRamp rampOf(const std::string& name);

// Draws a grid as a PNG: a two-colour ramp stretched from the smallest to the
// largest value, a legend, and a scale bar. Throws PlatformError when the file cannot be written or
// no cell has data.
void drawGridPicture(IFileSystem& files, const IRaster& raster, const AlgorithmicColorRamp& ramp,
                     const std::string& title, const std::string& file);

}  // namespace velmora
