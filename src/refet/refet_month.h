// SPDX-License-Identifier: MIT
// A month's reference ET as a raster: whoever reads a block, or saves the whole, makes the cells of
// each block from their grids, computes them and lets them go.
#pragma once

#include <atomic>
#include <cstddef>

#include "gis/parallel.h"
#include "gis/rasters.h"
#include "refet/cell_maker.h"
#include "refet/quality_pass.h"

namespace velmora {

// The computation of a block has failed, but for a grid that cannot be read.
class CalculationFailed : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class RefEtMonth : public IRaster {
  public:
    // What is given outlives the month. Every block that is read is counted in the quality, once.
    RefEtMonth(const CellMaker& maker, const CellInputs& inputs, const GridGeometry& geometry,
               MonthQuality& quality);

    const GridGeometry& geometry() const override { return geometry_; }
    // Throws UnreadableField, or CalculationFailed.
    void read(const CellBlock& block, std::span<float> values) const override;

    // Cells that have been read for which Blaney-Criddle reported its error and gave 0.
    std::size_t failedCells() const { return failedCells_; }

    // Throws the failure of the block whose failing cell comes first in the order of the records;
    // computes all of them for that. Returns when none fails.
    void throwFirstFailure(IParallelLoop& loop) const;

  private:
    const CellMaker& maker_;
    const CellInputs& inputs_;
    const GridGeometry& geometry_;
    MonthQuality& quality_;
    mutable std::atomic<std::size_t> failedCells_ = 0;
};

}  // namespace velmora
