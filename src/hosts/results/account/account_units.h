// SPDX-License-Identifier: MIT
// The units in which an account is shown. Its own are cells, and inches times cells.
#pragma once

#include <string_view>

#include "gis/grid_geometry.h"

namespace velmora {

struct AccountUnits {
    std::string_view name;  // as an option: "us", "metric"
    std::string_view area;
    std::string_view volume;
    std::string_view depth;
    std::string_view areaTag;  // at the end of the names of columns
    std::string_view volumeTag;
    std::string_view depthTag;
    double squareMetresPerArea = 1;
    double depthPerInch = 1;
    double volumePerDepthAndArea = 1;

    double areaOf(double cells, const GridGeometry& grid) const;
    double volumeOf(double inchCells, const GridGeometry& grid) const;
};

// Acres of 4047 square metres, acre-feet and inches.
const AccountUnits& usUnits();
// Hectares, cubic metres and millimetres.
const AccountUnits& metricUnits();

}  // namespace velmora
