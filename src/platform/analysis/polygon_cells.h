// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "gis/grid_geometry.h"

namespace velmora::platform {

// Whole rows of a grid.
struct RowRange {
    int first = 0;
    int count = 0;
};

// Which polygon each cell of a grid belongs to: the one that contains the cell's centre, of several
// the later feature. kNoRecord stands for none.
class PolygonCells {
  public:
    // Reads the shapefile once. Only the records marked in `chosen` take part; records beyond it
    // do not. Throws PlatformError.
    PolygonCells(const std::string& path, const GridGeometry& geometry,
                 const std::vector<bool>& chosen)
        : PolygonCells(path, geometry, chosen, {0, geometry.rows}) {}
    // Of these rows alone, each as in the whole grid.
    PolygonCells(const std::string& path, const GridGeometry& geometry,
                 const std::vector<bool>& chosen, RowRange rows);

    const GridGeometry& geometry() const { return geometry_; }
    // The records of a stretch of a row.
    std::span<const std::int32_t> records(int column, int row, int columns) const {
        return {cells_.data() +
                    static_cast<std::size_t>(row - rows_.first) *
                        static_cast<std::size_t>(geometry_.columns) +
                    static_cast<std::size_t>(column),
                static_cast<std::size_t>(columns)};
    }
    std::vector<std::int32_t> taken() && { return std::move(cells_); }
    std::size_t bytes() const { return cells_.size() * sizeof(std::int32_t); }

  private:
    GridGeometry geometry_;
    RowRange rows_;
    std::vector<std::int32_t> cells_;
};

}  // namespace velmora::platform
