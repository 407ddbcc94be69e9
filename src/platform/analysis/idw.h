// SPDX-License-Identifier: MIT
// Inverse distance weighting. The weights of a cell depend on where the stations stand and on the
// grid alone, so surfaces over the same stations (of all months and quantities) share one plan, and
// a block's weights are made once for all the surfaces that are read together.
#pragma once

#include <memory>
#include <vector>

#include "gis/rasters.h"
#include "platform/analysis/neighbour_search.h"

namespace velmora::platform {

// The weights of the cells of a block, leaf by leaf. They add up to 1 in every cell.
struct BlockWeights {
    struct Leaf {
        CellBlock cells;              // relative to the block
        std::vector<int> stations;    // ascending
        std::vector<double> weights;  // for each station the weights of all cells of the leaf
    };
    std::vector<Leaf> leaves;
};

class IdwPlan {
  public:
    IdwPlan(const GridGeometry& geometry, std::span<const Point> stations, double power,
            int nearest);
    bool serves(const GridGeometry& geometry, std::span<const Point> stations, double power,
                int nearest) const;
    const GridGeometry& geometry() const { return search_.geometry(); }
    // The block's weights, kept by each thread for the blocks it used last.
    const BlockWeights& weights(const CellBlock& block) const;

  private:
    BlockWeights compute(const CellBlock& block) const;
    BlockWeights::Leaf weigh(const NeighbourLeaf& leaf, const CellBlock& block) const;

    NeighbourSearch search_;
    double power_;
    int nearest_;
    unsigned long long serial_;
};

// The surface of the stations' values, in the order of the plan's stations.
RasterPtr idwRaster(std::shared_ptr<const IdwPlan> plan, std::vector<double> values);

}  // namespace velmora::platform
