// SPDX-License-Identifier: MIT
#include "gis/grid_geometry.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "gis/errors.h"
#include "gis/numbers.h"

namespace velmora {

namespace {

// A point this close before a border, in cells, counts as on it: cell sizes in files carry
// rounding.
constexpr double kOnBorder = 1e-6;

int cellHolding(double cellsFromEdge, int count) {
    return static_cast<int>(
        std::floor(std::clamp(cellsFromEdge + kOnBorder, -1.0, static_cast<double>(count))));
}

int cellsAcross(double length, double cellSize) {
    return std::max(1, static_cast<int>(std::nearbyint(length / cellSize)));
}

}  // namespace

Envelope GridGeometry::extent() const {
    return {xMin, yMax - rows * cellSize, xMin + columns * cellSize, yMax};
}

int GridGeometry::columnAt(double x) const { return cellHolding((x - xMin) / cellSize, columns); }

int GridGeometry::rowAt(double y) const { return cellHolding((yMax - y) / cellSize, rows); }

bool GridGeometry::sameCells(const GridGeometry& other) const {
    return columns == other.columns && rows == other.rows && xMin == other.xMin &&
           yMax == other.yMax && cellSize == other.cellSize;
}

GridGeometry GridGeometry::covering(const Envelope& extent, double cellSize, std::string crs) {
    if (!(cellSize > 0) || !std::isfinite(cellSize)) {
        throw PlatformError("The cell size is " + numberText(cellSize) +
                            ": give a cell size above 0 metres");
    }
    if (!(extent.width() > 0) || !(extent.height() > 0) || !std::isfinite(extent.width()) ||
        !std::isfinite(extent.height())) {
        throw PlatformError("The modelling extent is empty (width " + numberText(extent.width()) +
                            ", height " + numberText(extent.height()) +
                            "): choose an extent provider that covers an area");
    }
    const double across = extent.width() / cellSize;
    const double down = extent.height() / cellSize;
    const double cells = std::max(1.0, across) * std::max(1.0, down);
    if (cells > kMostCells) {
        const double least = std::sqrt(extent.width() * extent.height() / kMostCells);
        throw PlatformError("A cell size of " + numberText(cellSize) + " m makes " +
                            numberText(std::ceil(cells)) +
                            " cells over the modelling extent, more than a grid can hold: give a "
                            "cell size of at least " +
                            numberText(std::ceil(least * 100) / 100) + " m");
    }
    GridGeometry geometry;
    geometry.columns = cellsAcross(extent.width(), cellSize);
    geometry.rows = cellsAcross(extent.height(), cellSize);
    geometry.xMin = extent.xMin;
    geometry.yMax = extent.yMax;
    geometry.cellSize = cellSize;
    geometry.crs = std::move(crs);
    return geometry;
}

}  // namespace velmora
