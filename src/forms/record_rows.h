// SPDX-License-Identifier: MIT
// The rows of a query as the cells of a grid.
#pragma once

#include <string>
#include <vector>

#include "forms/controls.h"
#include "gis/tables.h"

namespace velmora {

// A value as a cell shows it: numbers by their shortest text, nothing for null.
std::string cellText(const FieldValue& value);

// Shows the fields and the rows from the current one on; the cells, row by row.
std::vector<std::vector<std::string>> showRows(DataGrid& grid, IRecordset& records);

}  // namespace velmora
