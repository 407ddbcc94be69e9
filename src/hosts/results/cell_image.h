// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "gis/map_document.h"
#include "gis/rasters.h"
#include "hosts/results/png_canvas.h"

namespace velmora {

// A range of values over a ramp's colours; values outside it take its ends.
struct ColorScale {
    std::vector<Rgb> colors;
    double minimum = 0;
    double maximum = 0;
};

// The colour of a cell with that value.
using CellColors = std::function<Rgb(float)>;
CellColors colorsOf(const ColorScale& scale);

// The cells of a raster as an image of that size: each pixel shows the cell that holds it, cells
// without data are light grey.
ImageSurface cellImage(const IRaster& raster, const CellColors& colors, int width, int height);

}  // namespace velmora
