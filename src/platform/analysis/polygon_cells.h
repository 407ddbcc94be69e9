// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "gis/grid_geometry.h"

namespace velmora::platform {

// Which polygon each cell of a grid belongs to: the one that contains the cell's centre, of several
// the later feature.
class PolygonCells {
  public:
    static constexpr std::int32_t kNone = -1;

    // Reads the shapefile once. Only the records marked in `chosen` take part; records beyond it
    // do not. Throws PlatformError.
    PolygonCells(const std::string& path, const GridGeometry& geometry,
                 const std::vector<bool>& chosen);

    const GridGeometry& geometry() const { return geometry_; }
    // The records (or kNone) of a stretch of a row.
    std::span<const std::int32_t> records(int column, int row, int columns) const {
        return {cells_.data() +
                    static_cast<std::size_t>(row) * static_cast<std::size_t>(geometry_.columns) +
                    static_cast<std::size_t>(column),
                static_cast<std::size_t>(columns)};
    }
    std::size_t bytes() const { return cells_.size() * sizeof(std::int32_t); }

  private:
    GridGeometry geometry_;
    std::vector<std::int32_t> cells_;
};

}  // namespace velmora::platform
