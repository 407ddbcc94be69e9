// SPDX-License-Identifier: MIT
#include "platform/grid/raster_sampling.h"

#include <algorithm>
#include <climits>
#include <utility>

#include "platform/features/spatial_reference.h"

namespace velmora::platform {

namespace {

// The most source cells that are read at once: a megabyte. A block whose source cells lie further
// apart is sampled in parts.
constexpr std::size_t kMostRead = std::size_t{1} << 18U;

// Source columns and rows of the cells of a block: one of each per cell, or, where the lattices are
// parallel, one column per column and one row per row.
struct SourceCells {
    std::vector<int> columns;
    std::vector<int> rows;
    bool parallel = false;
    std::size_t width = 0;  // columns of the block

    int column(int c, int r) const { return columns[parallel ? at(c, 0) : at(c, r)]; }
    int row(int c, int r) const { return rows[parallel ? static_cast<std::size_t>(r) : at(c, r)]; }
    std::size_t at(int c, int r) const {
        return static_cast<std::size_t>(r) * width + static_cast<std::size_t>(c);
    }
};

bool inside(int index, int count) { return index >= 0 && index < count; }

struct Range {
    int low = INT_MAX;
    int high = -1;
    void add(int index, int count) {
        if (!inside(index, count)) return;
        low = std::min(low, index);
        high = std::max(high, index);
    }
    int size() const { return high - low + 1; }
};

// The smallest window of the source that holds the source cells of a part of the block, as far as
// they lie inside it; `part` is counted from the block's corner.
CellBlock windowOf(const SourceCells& cells, const CellBlock& part, const GridGeometry& source) {
    Range columns;
    Range rows;
    const int last = cells.parallel ? part.row : part.row + part.rows - 1;  // all rows are alike
    for (int r = part.row; r <= last; ++r) {
        for (int c = part.column; c < part.column + part.columns; ++c) {
            columns.add(cells.column(c, r), source.columns);
            if (!cells.parallel) rows.add(cells.row(c, r), source.rows);
        }
    }
    for (int r = part.row; cells.parallel && r < part.row + part.rows; ++r) {
        rows.add(cells.row(part.column, r), source.rows);
    }
    if (columns.high < 0 || rows.high < 0) return {};
    return {columns.low, rows.low, columns.size(), rows.size()};
}

class SampledRaster : public IRaster {
  public:
    SampledRaster(RasterPtr source, GridGeometry geometry, ISpatialReferenceFactory* transforms)
        : source_(std::move(source)), geometry_(std::move(geometry)), transforms_(transforms) {}

    const GridGeometry& geometry() const override { return geometry_; }

    void read(const CellBlock& block, std::span<float> values) const override {
        const SourceCells cells = transforms_ ? transformedCells(block) : parallelCells(block);
        std::fill(values.begin(), values.end(), kNoData);
        sample(cells, {0, 0, block.columns, block.rows}, values);
    }

  private:
    // Fine sources are read in halves of halves, by rows first: a row of cells needs a single row
    // of a source whose lattice is parallel.
    void sample(const SourceCells& cells, const CellBlock& part, std::span<float> values) const {
        const CellBlock window = windowOf(cells, part, source_->geometry());
        if (window.cells() == 0) return;
        if (window.cells() <= kMostRead) {
            samplePart(cells, part, window, values);
            return;
        }
        CellBlock first = part;
        CellBlock second = part;
        if (part.rows > 1) {
            first.rows = part.rows / 2;
            second.row += first.rows;
            second.rows -= first.rows;
        } else {
            first.columns = part.columns / 2;
            second.column += first.columns;
            second.columns -= first.columns;
        }
        sample(cells, first, values);
        sample(cells, second, values);
    }

    void samplePart(const SourceCells& cells, const CellBlock& part, const CellBlock& window,
                    std::span<float> values) const {
        std::vector<float> found(window.cells());
        source_->read(window, found);
        const auto& source = source_->geometry();
        for (int r = part.row; r < part.row + part.rows; ++r) {
            for (int c = part.column; c < part.column + part.columns; ++c) {
                const int column = cells.column(c, r);
                const int row = cells.row(c, r);
                if (!inside(column, source.columns) || !inside(row, source.rows)) continue;
                values[cells.at(c, r)] = found[static_cast<std::size_t>(row - window.row) *
                                                   static_cast<std::size_t>(window.columns) +
                                               static_cast<std::size_t>(column - window.column)];
            }
        }
    }

    // Same coordinate system: one source column per column, one source row per row.
    SourceCells parallelCells(const CellBlock& block) const {
        SourceCells cells;
        cells.parallel = true;
        cells.width = static_cast<std::size_t>(block.columns);
        const auto& source = source_->geometry();
        for (int c = 0; c < block.columns; ++c) {
            cells.columns.push_back(source.columnAt(geometry_.columnCentre(block.column + c)));
        }
        for (int r = 0; r < block.rows; ++r) {
            cells.rows.push_back(source.rowAt(geometry_.rowCentre(block.row + r)));
        }
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
        cells.width = static_cast<std::size_t>(block.columns);
        const auto& source = source_->geometry();
        for (const Point& p : transforms_->project(centres, geometry_.crs, source.crs)) {
            cells.columns.push_back(source.columnAt(p.x));
            cells.rows.push_back(source.rowAt(p.y));
        }
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
