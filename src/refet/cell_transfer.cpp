// SPDX-License-Identifier: MIT
#include "refet/cell_transfer.h"

#include <algorithm>
#include <string>
#include <utility>

#include "gis/errors.h"
#include "gis/grid_tiles.h"

namespace velmora {

namespace {

std::size_t recordOf(const GridGeometry& geometry, int column, int row) {
    return static_cast<std::size_t>(column) * static_cast<std::size_t>(geometry.rows) +
           static_cast<std::size_t>(row);
}

class FieldRaster : public IRaster {
  public:
    FieldRaster(std::span<const double> values, GridGeometry geometry)
        : values_(values), geometry_(std::move(geometry)) {}
    const GridGeometry& geometry() const override { return geometry_; }
    void read(const CellBlock& block, std::span<float> cells) const override {
        for (int c = 0; c < block.columns; ++c) {
            const double* from = values_.data() + recordOf(geometry_, block.column + c, block.row);
            float* to = cells.data() + c;
            for (int r = 0; r < block.rows; ++r, to += block.columns)
                *to = static_cast<float>(from[r]);
        }
    }

  private:
    std::span<const double> values_;
    GridGeometry geometry_;
};

}  // namespace

void gridIntoField(IParallelLoop& loop, const IRaster& raster, CellTable& table, CellField field) {
    const GridGeometry& geometry = raster.geometry();
    if (geometry.cells() != table.rowCount()) {
        throw PlatformError("the grid has " + std::to_string(geometry.columns) + " x " +
                            std::to_string(geometry.rows) + " cells, but the cell table has " +
                            std::to_string(table.rowCount()) + " records");
    }
    const std::span<double> values = table.writable(field);
    const auto bands = static_cast<std::size_t>((geometry.rows + kTileRows - 1) / kTileRows);
    loop.run(bands, 1, [&](std::size_t begin, std::size_t end) {
        std::vector<float> cells;
        for (std::size_t band = begin; band < end; ++band) {
            const int row = static_cast<int>(band) * kTileRows;
            const int rows = std::min(kTileRows, geometry.rows - row);
            for (int column = 0; column < geometry.columns; column += kTileColumns) {
                const CellBlock block{column, row,
                                      std::min(kTileColumns, geometry.columns - column), rows};
                cells.resize(block.cells());
                raster.read(block, cells);
                for (int c = 0; c < block.columns; ++c) {
                    double* to = values.data() + recordOf(geometry, column + c, row);
                    const float* from = cells.data() + c;
                    for (int r = 0; r < rows; ++r, from += block.columns) to[r] = *from;
                }
            }
        }
    });
}

RasterPtr fieldAsGrid(const CellTable& table, CellField field, const GridGeometry& geometry) {
    const auto values = table.values(field);
    if (values.size() < geometry.cells()) {
        throw PlatformError("the cell table has " + std::to_string(values.size()) +
                            " records with a value of " + cellFieldName(field) + ", the grid has " +
                            std::to_string(geometry.cells()) + " cells");
    }
    return valuesAsGrid(values, geometry);
}

RasterPtr valuesAsGrid(std::span<const double> values, const GridGeometry& geometry) {
    return std::make_shared<FieldRaster>(values, geometry);
}

}  // namespace velmora
