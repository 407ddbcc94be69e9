// SPDX-License-Identifier: MIT
#include "tests/support/fake_map_algebra.h"

#include <cmath>
#include <limits>
#include <utility>

#include "gis/errors.h"
#include "gis/expression.h"
#include "gis/memory_raster.h"

namespace velmora::test {

namespace {

// The values of a raster at the cells' centres, not-a-number where it has none.
std::vector<double> sampled(const IRaster& raster, const GridGeometry& cells) {
    const Grid grid = wholeGrid(raster);
    const GridGeometry& from = grid.geometry;
    std::vector<double> values;
    values.reserve(cells.cells());
    for (int r = 0; r < cells.rows; ++r) {
        const int row = from.rowAt(cells.rowCentre(r));
        for (int c = 0; c < cells.columns; ++c) {
            const int column = from.columnAt(cells.columnCentre(c));
            const bool inside = column >= 0 && column < from.columns && row >= 0 && row < from.rows;
            const float value = inside ? grid.at(column, row) : kNoData;
            values.push_back(value == kNoData ? std::numeric_limits<double>::quiet_NaN()
                                              : static_cast<double>(value));
        }
    }
    return values;
}

}  // namespace

void FakeMapAlgebra::BindRaster(RasterPtr raster, const std::string& name) {
    bound_[name] = std::move(raster);
}

RasterPtr FakeMapAlgebra::bound(const std::string& name) const {
    const auto found = bound_.find(name);
    if (found == bound_.end()) throw PlatformError("No raster is bound as [" + name + "]");
    return found->second;
}

RasterPtr FakeMapAlgebra::Execute(const std::string& text) {
    const Expression expression(text);
    std::vector<GridGeometry> inputs;
    for (const std::string& name : expression.names()) inputs.push_back(bound(name)->geometry());
    Grid result(environment_.geometryOf(inputs));
    std::vector<std::vector<double>> columns;
    std::vector<const double*> operands;
    for (const std::string& name : expression.names()) {
        columns.push_back(sampled(*bound(name), result.geometry));
    }
    for (const auto& column : columns) operands.push_back(column.data());
    std::vector<double> values(result.values.size());
    expression.evaluate(operands, values.size(), values.data());
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!std::isnan(values[i])) result.values[i] = static_cast<float>(values[i]);
    }
    return std::make_shared<MemoryRaster>(std::move(result));
}

}  // namespace velmora::test
