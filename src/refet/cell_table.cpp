// SPDX-License-Identifier: MIT
#include "refet/cell_table.h"

#include <limits>
#include <string>

#include "gis/errors.h"

namespace velmora {

namespace {

constexpr std::array<const char*, kCellFields> kNames = {
    "Latitude", "Elevation", "TM", "TN", "TD", "TA", "GG", "SA", "SR", "WS", "RefET"};

constexpr double kNull = std::numeric_limits<double>::quiet_NaN();

}  // namespace

const char* cellFieldName(CellField field) { return kNames[static_cast<std::size_t>(field)]; }

void CellTable::createRecords(const CellBlock& block) {
    block_ = block;
    for (auto& field : fields_) field.clear();
}

std::span<const double> CellTable::values(CellField field) const {
    return fields_[static_cast<std::size_t>(field)];
}

std::span<double> CellTable::writable(CellField field) {
    auto& values = fields_[static_cast<std::size_t>(field)];
    if (values.size() != rowCount()) values.assign(rowCount(), kNull);
    return values;
}

void gridIntoField(const IRaster& raster, CellTable& table, CellField field) {
    const CellBlock& block = table.block();
    std::vector<float> cells(block.cells());
    raster.read(block, cells);
    const std::span<double> values = table.writable(field);
    const auto columns = static_cast<std::size_t>(block.columns);
    for (std::size_t c = 0, k = 0; c < columns; ++c) {
        for (std::size_t at = c; at < cells.size(); at += columns, ++k) {
            values[k] = static_cast<double>(cells[at]);
        }
    }
}

void fieldIntoCells(const CellTable& table, CellField field, std::span<float> cells) {
    const auto values = table.values(field);
    if (values.size() != table.rowCount()) {
        throw PlatformError(std::string("the field ") + cellFieldName(field) +
                            " of the cell table is empty");
    }
    recordsIntoCells(values, table.block(), cells);
}

void recordsIntoCells(std::span<const double> values, const CellBlock& block,
                      std::span<float> cells) {
    const auto columns = static_cast<std::size_t>(block.columns);
    for (std::size_t c = 0, k = 0; c < columns; ++c) {
        for (std::size_t at = c; at < block.cells(); at += columns, ++k) {
            cells[at] = static_cast<float>(values[k]);
        }
    }
}

}  // namespace velmora
