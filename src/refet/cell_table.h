// SPDX-License-Identifier: MIT
// The cell table "GGG": one record per grid cell, one field per quantity, all doubles. A run makes
// it block by block: what is held is the records of the cells of one block, column by column, top
// row first in each, so that record k belongs to the block's column k / rows and row k mod rows.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "gis/rasters.h"

namespace velmora {

enum class CellField { Latitude, Elevation, TM, TN, TD, TA, GG, SA, SR, WS, RefET };
constexpr int kCellFields = 11;

// "Latitude", "Elevation", "TM" ...
const char* cellFieldName(CellField field);

class CellTable {
  public:
    CellTable() = default;
    explicit CellTable(const CellBlock& block) { createRecords(block); }

    // Makes a record for each cell of the block, all fields null; whatever was there goes.
    void createRecords(const CellBlock& block);
    const CellBlock& block() const { return block_; }
    std::size_t rowCount() const { return block_.cells(); }
    // Of the block.
    std::size_t rows() const { return static_cast<std::size_t>(block_.rows); }

    // A field of all records. Reading a field that was never written gives an empty span.
    std::span<const double> values(CellField field) const;
    std::span<double> writable(CellField field);

  private:
    CellBlock block_;
    std::array<std::vector<double>, kCellFields> fields_;
};

// The block's cells of a raster into the field; no data is kNoData. Throws what reading throws.
void gridIntoField(const IRaster& raster, CellTable& table, CellField field);

// A field as cells of its block, row by row, in single precision. Throws PlatformError for one that
// was never written.
void fieldIntoCells(const CellTable& table, CellField field, std::span<float> cells);

// The same of values in the order of the records.
void recordsIntoCells(std::span<const double> values, const CellBlock& block,
                      std::span<float> cells);

}  // namespace velmora
