// SPDX-License-Identifier: MIT
#include "hosts/results/grid_statistics.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmora {

GridStatistics statisticsOf(const IRaster& raster) {
    const GridGeometry& geometry = raster.geometry();
    GridStatistics s;
    s.minimum = std::numeric_limits<double>::infinity();
    s.maximum = -s.minimum;
    double squares = 0;  // around the running mean, as Welford sums them
    std::vector<float> row(static_cast<std::size_t>(geometry.columns));
    for (int r = 0; r < geometry.rows; ++r) {
        raster.read({0, r, geometry.columns, 1}, row);
        for (const float cell : row) {
            if (cell == kNoData) continue;
            const double value = cell;
            ++s.cells;
            const double step = value - s.mean;
            s.mean += step / static_cast<double>(s.cells);
            squares += step * (value - s.mean);
            s.minimum = std::min(s.minimum, value);
            s.maximum = std::max(s.maximum, value);
        }
    }
    if (s.cells > 0) s.deviation = std::sqrt(squares / static_cast<double>(s.cells));
    return s;
}

}  // namespace velmora
