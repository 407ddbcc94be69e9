// SPDX-License-Identifier: MIT
// Which stations every cell of a grid is estimated from. Few distinct sets serve all cells, so what
// depends on a set alone is computed once per set.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "gis/grid_tiles.h"
#include "platform/analysis/neighbour_search.h"

namespace velmora::platform {

class NeighbourSets {
  public:
    // The `nearest` nearest stations (all, when there are fewer) of every cell.
    NeighbourSets(const GridGeometry& geometry, std::span<const Point> stations, int nearest);
    bool serves(const GridGeometry& geometry, std::span<const Point> stations, int nearest) const;

    const GridGeometry& geometry() const { return search_.geometry(); }
    std::span<const Point> stations() const { return search_.stations(); }
    // The distinct sets, each by rising station number.
    std::size_t count() const { return sets_.size(); }
    std::span<const int> set(std::size_t index) const { return sets_[index]; }

    // A rectangle of cells and the sets that its cells use.
    struct Leaf {
        CellBlock cells;
        std::vector<std::uint32_t> sets;
        std::vector<std::uint8_t> choice;  // of each cell, row by row, among `sets`; empty for one
    };
    // The leaves that together cover the block; they may reach beyond it.
    std::vector<const Leaf*> leaves(const CellBlock& block) const;

  private:
    NeighbourSearch search_;
    int nearest_;
    GridTiles tiles_;                        // of the grid format, in which surfaces are written
    std::vector<std::vector<Leaf>> leaves_;  // of each tile
    std::vector<std::vector<int>> sets_;
};

}  // namespace velmora::platform
