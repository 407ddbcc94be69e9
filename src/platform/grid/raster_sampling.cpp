// SPDX-License-Identifier: MIT
#include "platform/grid/raster_sampling.h"

#include <algorithm>
#include <climits>
#include <utility>

#include "platform/features/spatial_reference.h"

namespace velmora::platform {

namespace {

// Source columns and rows of the cells of a block, and the window of the source that holds them.
struct SourceCells {
    std::vector<int> columns;
    std::vector<int> rows;
    CellBlock window;
};

bool inside(int index, int count) { return index >= 0 && index < count; }

// The smallest window of the source that holds all source cells that lie inside it.
CellBlock windowOf(const std::vector<int>& columns, const std::vector<int>& rows,
                   const GridGeometry& source) {
    const auto range = [](const std::vector<int>& indices, int count) {
        int low = INT_MAX;
        int high = -1;
        for (const int index : indices) {
            if (!inside(index, count)) continue;
            low = std::min(low, index);
            high = std::max(high, index);
        }
        return std::pair{low, high};
    };
    const auto [firstColumn, lastColumn] = range(columns, source.columns);
    const auto [firstRow, lastRow] = range(rows, source.rows);
    if (lastColumn < 0 || lastRow < 0) return {};
    return {firstColumn, firstRow, lastColumn - firstColumn + 1, lastRow - firstRow + 1};
}

class SampledRaster : public IRaster {
  public:
    SampledRaster(RasterPtr source, GridGeometry geometry, ISpatialReferenceFactory* transforms)
        : source_(std::move(source)), geometry_(std::move(geometry)), transforms_(transforms) {}

    const GridGeometry& geometry() const override { return geometry_; }

    void read(const CellBlock& block, std::span<float> values) const override {
        const SourceCells cells = transforms_ ? transformedCells(block) : alignedCells(block);
        std::fill(values.begin(), values.end(), kNoData);
        if (cells.window.cells() == 0) return;
        std::vector<float> window(cells.window.cells());
        source_->read(cells.window, window);
        const auto& source = source_->geometry();
        const auto width = static_cast<std::size_t>(block.columns);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const bool aligned = transforms_ == nullptr;
            const int column = cells.columns[aligned ? i % width : i];
            const int row = cells.rows[aligned ? i / width : i];
            if (!inside(column, source.columns) || !inside(row, source.rows)) continue;
            values[i] = window[static_cast<std::size_t>(row - cells.window.row) *
                                   static_cast<std::size_t>(cells.window.columns) +
                               static_cast<std::size_t>(column - cells.window.column)];
        }
    }

  private:
    // Same coordinate system: one source column per column, one source row per row.
    SourceCells alignedCells(const CellBlock& block) const {
        SourceCells cells;
        const auto& source = source_->geometry();
        for (int c = 0; c < block.columns; ++c) {
            cells.columns.push_back(source.columnAt(geometry_.columnCentre(block.column + c)));
        }
        for (int r = 0; r < block.rows; ++r) {
            cells.rows.push_back(source.rowAt(geometry_.rowCentre(block.row + r)));
        }
        cells.window = windowOf(cells.columns, cells.rows, source);
        return cells;
    }

    SourceCells transformedCells(const CellBlock& block) const {
        std::vector<Point> centres;
        centres.reserve(block.cells());
        for (int r = 0; r < block.rows; ++r) {
            for (int c = 0; c < block.columns; ++c) {
                centres.push_back(
                    {geometry_.columnCentre(block.column + c), geometry_.rowCentre(block.row + r)});
            }
        }
        SourceCells cells;
        const auto& source = source_->geometry();
        for (const Point& p : transforms_->project(centres, geometry_.crs, source.crs)) {
            cells.columns.push_back(source.columnAt(p.x));
            cells.rows.push_back(source.rowAt(p.y));
        }
        cells.window = windowOf(cells.columns, cells.rows, source);
        return cells;
    }

    RasterPtr source_;
    GridGeometry geometry_;
    ISpatialReferenceFactory* transforms_;
};

}  // namespace

RasterPtr sampledOn(RasterPtr source, const GridGeometry& geometry,
                    ISpatialReferenceFactory& spatialReferences) {
    const auto& own = source->geometry();
    const bool sameSystem =
        own.crs.empty() || geometry.crs.empty() || sameCoordinateSystem(own.crs, geometry.crs);
    if (sameSystem && own.sameCells(geometry)) return source;
    return std::make_shared<SampledRaster>(std::move(source), geometry,
                                           sameSystem ? nullptr : &spatialReferences);
}

}  // namespace velmora::platform
