// SPDX-License-Identifier: MIT
// The tiles in which grids are stored, and in which work over whole grids is divided.
#pragma once

#include <algorithm>
#include <cstddef>

#include "gis/rasters.h"

namespace velmora {

constexpr int kTileColumns = 256;
constexpr int kTileRows = 16;

// The tiles of a grid, left to right, top to bottom.
struct GridTiles {
    int across = 0;
    int down = 0;
    explicit GridTiles(const GridGeometry& geometry)
        : across((geometry.columns + kTileColumns - 1) / kTileColumns),
          down((geometry.rows + kTileRows - 1) / kTileRows) {}
    std::size_t count() const {
        return static_cast<std::size_t>(across) * static_cast<std::size_t>(down);
    }
    // The cells of tile `index`, cut at the grid's edges.
    CellBlock block(std::size_t index, const GridGeometry& geometry) const {
        const int column =
            static_cast<int>(index % static_cast<std::size_t>(across)) * kTileColumns;
        const int row = static_cast<int>(index / static_cast<std::size_t>(across)) * kTileRows;
        return {column, row, std::min(kTileColumns, geometry.columns - column),
                std::min(kTileRows, geometry.rows - row)};
    }
};

}  // namespace velmora
