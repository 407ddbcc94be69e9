// SPDX-License-Identifier: MIT
// The nearest stations of every cell of a block.
#pragma once

#include <span>
#include <vector>

#include "gis/grid_geometry.h"

namespace velmora::platform {

// A rectangle of cells whose nearest stations are known: `sure` stations are among the nearest of
// every cell; each cell takes the missing ones from `open`, by distance and then by number.
struct NeighbourLeaf {
    CellBlock cells;        // in the columns and rows of the grid
    std::vector<int> sure;  // ascending
    std::vector<int> open;  // ascending; empty when all cells share one set
    int missing = 0;        // how many of `open` each cell takes
};

// Finds the `nearest` nearest stations (all, when there are fewer) by halving rectangles: "station
// a is nearer than b at all four corners" settles a pair for the whole rectangle, because d(a)^2 -
// d(b)^2 is linear in position.
class NeighbourSearch {
  public:
    NeighbourSearch(const GridGeometry& geometry, std::span<const Point> stations, int nearest);
    // Calls for a list of leaves that together cover the block.
    std::vector<NeighbourLeaf> leaves(const CellBlock& block) const;

    std::span<const Point> stations() const { return stations_; }
    const GridGeometry& geometry() const { return geometry_; }

  private:
    void split(const CellBlock& block, const std::vector<int>& candidates,
               std::vector<NeighbourLeaf>& leaves) const;
    std::vector<int> withinReach(const CellBlock& block, const std::vector<int>& candidates) const;
    bool settle(const CellBlock& block, const std::vector<int>& candidates,
                NeighbourLeaf& leaf) const;

    GridGeometry geometry_;
    std::vector<Point> stations_;
    std::size_t nearest_;
};

}  // namespace velmora::platform
