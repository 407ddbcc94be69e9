// SPDX-License-Identifier: MIT
// The tiles in which grids are stored, and in which work over whole grids is divided.
#pragma once

#include <algorithm>
#include <cstddef>

#include "gis/parallel.h"
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
    // The tile that holds the block's first cell.
    std::size_t indexOf(const CellBlock& block) const {
        return static_cast<std::size_t>(block.row / kTileRows) * static_cast<std::size_t>(across) +
               static_cast<std::size_t>(block.column / kTileColumns);
    }
};

// Calls body(block) for every tile of the grid; tiles may be looked at at once.
template <class Body>
void forEachTile(IParallelLoop& loop, const GridGeometry& geometry, Body body) {
    const GridTiles tiles(geometry);
    loop.run(tiles.count(), static_cast<std::size_t>(tiles.across),
             [&](std::size_t begin, std::size_t end) {
                 for (std::size_t tile = begin; tile < end; ++tile) {
                     body(tiles.block(tile, geometry));
                 }
             });
}

}  // namespace velmora
