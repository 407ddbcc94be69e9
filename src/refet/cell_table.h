// SPDX-License-Identifier: MIT
// The cell table "GGG": one record per grid cell, one field per quantity, all doubles. Records
// stand column by column of the grid, top row first in each: record k belongs to grid column k /
// rows and row k mod rows. While a run is on, the table lives in memory, field by field.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "gis/tables.h"

namespace velmora {

enum class CellField { Latitude, Elevation, TM, TN, TD, TA, GG, SA, SR, WS, RefET };
constexpr int kCellFields = 11;

// "Latitude", "Elevation", "TM" ...
const char* cellFieldName(CellField field);

class CellTable : public IColumnSource {
  public:
    // Makes `records` records, all fields null; whatever was there goes.
    void createRecords(std::size_t records);
    std::size_t rowCount() const override { return records_; }
    int columnCount() const override { return kCellFields; }
    std::span<const double> column(int position) const override;

    // A field of all records, for whole passes. Reading a field that was never written gives an
    // empty span.
    std::span<const double> values(CellField field) const;
    std::span<double> writable(CellField field);

    // The records one after the other, as a cursor over "Select * from GGG".
    std::unique_ptr<IRecordset> records();

  private:
    std::vector<double>& storage(CellField field) {
        return fields_[static_cast<std::size_t>(field)];
    }
    std::size_t records_ = 0;
    std::array<std::vector<double>, kCellFields> fields_;
};

}  // namespace velmora
