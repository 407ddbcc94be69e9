// SPDX-License-Identifier: MIT
#include "forms/record_rows.h"

#include "gis/numbers.h"

namespace velmora {

std::string cellText(const FieldValue& value) {
    if (const auto* number = std::get_if<double>(&value)) return numberText(*number);
    return isNull(value) ? std::string() : std::get<std::string>(value);
}

std::vector<std::vector<std::string>> showRows(DataGrid& grid, IRecordset& records) {
    std::vector<std::string> columns;
    for (int i = 0; i < records.fieldCount(); ++i) columns.push_back(records.fieldName(i));
    std::vector<std::vector<std::string>> rows;
    for (; !records.eof(); records.moveNext()) {
        rows.emplace_back();
        for (const std::string& column : columns) {
            rows.back().push_back(cellText(records.value(column)));
        }
    }
    grid.show(std::move(columns), rows);
    return rows;
}

}  // namespace velmora
