// SPDX-License-Identifier: MIT
// Where the cells of a grid lie, as a value: the rounding between coordinates and cells of one
// grid. Which lattice several inputs have in common, the environment of an operation says
// (analysis.h).
#pragma once

#include <cstddef>
#include <string>

#include "gis/envelope.h"

namespace velmora {

// Square cells, anchored at the top left corner, rows counted from the top.
struct GridGeometry {
    int columns = 0;
    int rows = 0;
    double xMin = 0;
    double yMax = 0;
    double cellSize = 0;  // map units (metres)
    std::string crs;      // coordinate system as WKT; empty when unknown

    std::size_t cells() const {
        return static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
    }
    Envelope extent() const;
    double columnCentre(int column) const { return xMin + (column + 0.5) * cellSize; }
    double rowCentre(int row) const { return yMax - (row + 0.5) * cellSize; }

    // The column (row) that holds a coordinate; a coordinate on a border, or within a millionth of
    // a cell of it, belongs to the right (lower) cell. Outside the grid the result is below 0 or
    // not below columns (rows), clamped to one cell beyond.
    int columnAt(double x) const;
    int rowAt(double y) const;

    // Same cells, whatever the text of the coordinate system.
    bool sameCells(const GridGeometry& other) const;
    bool operator==(const GridGeometry&) const = default;

    // The analysis grid of an explicit extent: anchored at (xMin, yMax), width and height divided
    // by the cell size and rounded to nearest (halves to even), at least one cell each way.
    // Throws PlatformError when the cell size is not a positive number, when the extent is empty,
    // or when the grid would have more cells than a grid dataset can hold.
    static GridGeometry covering(const Envelope& extent, double cellSize, std::string crs);
};

// The most cells a grid may have: one tile file holds 4 GiB of single precision cells.
constexpr double kMostCells = 1.0e9;

// A rectangle of cells of a grid, the unit in which values travel.
struct CellBlock {
    int column = 0;
    int row = 0;
    int columns = 0;
    int rows = 0;
    std::size_t cells() const {
        return static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
    }
    bool operator==(const CellBlock&) const = default;
};

}  // namespace velmora
