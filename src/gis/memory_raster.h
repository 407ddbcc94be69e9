// SPDX-License-Identifier: MIT
#pragma once

#include "gis/grid.h"
#include "gis/rasters.h"

namespace velmora {

// A grid in memory as a raster.
class MemoryRaster : public IRaster {
  public:
    explicit MemoryRaster(Grid grid) : grid_(std::move(grid)) {}
    const GridGeometry& geometry() const override { return grid_.geometry; }
    void read(const CellBlock& block, std::span<float> values) const override {
        auto to = values.begin();
        for (int r = 0; r < block.rows; ++r) {
            for (int c = 0; c < block.columns; ++c)
                *to++ = grid_.at(block.column + c, block.row + r);
        }
    }

  private:
    Grid grid_;
};

// All cells of a raster.
inline Grid wholeGrid(const IRaster& raster) {
    Grid grid(raster.geometry());
    raster.read({0, 0, grid.geometry.columns, grid.geometry.rows}, grid.values);
    return grid;
}

}  // namespace velmora
