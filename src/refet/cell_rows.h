// SPDX-License-Identifier: MIT
// All records of the cell table "GGG", in their order, made a slice of the grid's columns at a
// time.
#pragma once

#include <optional>

#include "gis/parallel.h"
#include "gis/tables.h"
#include "refet/cell_maker.h"

namespace velmora {

class CellRows : public IRowSource {
  public:
    // The fields come from `inputs`; reference ET is that of `calculated`, and null without it.
    // What is given outlives the rows.
    struct Of {
        IParallelLoop& loop;
        const CellMaker& maker;
        const GridGeometry& geometry;
        const CellInputs& inputs;
        const std::optional<CellInputs>& calculated;
    };

    explicit CellRows(const Of& run) : run_(run) {}

    std::size_t rowCount() const override { return run_.geometry.cells(); }
    int columnCount() const override { return kCellFields; }
    // Throws UnreadableField.
    std::size_t next(std::size_t first) override;
    std::span<const double> column(int position) const override;

  private:
    // The records of a block within the slice.
    CellTable records(const CellBlock& block) const;
    void calculate(CellTable& table) const;
    void put(const CellTable& records);

    Of run_;
    CellTable slice_;
};

}  // namespace velmora
