// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "gis/rasters.h"

namespace velmora {

struct GridStatistics {
    std::size_t cells = 0;  // with data
    double minimum = 0;
    double maximum = 0;
    double mean = 0;
    double deviation = 0;  // of the population
};

GridStatistics statisticsOf(const IRaster& raster);

}  // namespace velmora
