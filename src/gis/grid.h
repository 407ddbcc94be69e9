// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <vector>

#include "gis/grid_geometry.h"

namespace velmora {

// The mark of a cell without data in grids and pixel blocks: the most negative single,
// -3.4028234663852886e38.
constexpr float kNoData = std::numeric_limits<float>::lowest();

// A grid held in memory: single precision, row by row, top row first.
struct Grid {
    GridGeometry geometry;
    std::vector<float> values;

    explicit Grid(GridGeometry where, float value = kNoData)
        : geometry(std::move(where)), values(geometry.cells(), value) {}

    float& at(int column, int row) { return values[index(column, row)]; }
    float at(int column, int row) const { return values[index(column, row)]; }

  private:
    std::size_t index(int column, int row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(geometry.columns) +
               static_cast<std::size_t>(column);
    }
};

}  // namespace velmora
