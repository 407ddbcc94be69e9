// SPDX-License-Identifier: MIT
// Data grids of forms as the command prints them.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "forms/controls.h"

namespace velmora::cli {

// Which columns (by position) hold numbers.
using NumberColumns = std::function<bool(std::size_t)>;

// One object per row; cells of number columns are numbers, or null when they are empty.
nlohmann::ordered_json rowsOf(
    const DataGrid& grid, const NumberColumns& isNumber = [](std::size_t) { return false; });

// Aligned columns under their names, each as wide as its widest cell: the first at the left, others
// at the right. `heading` may shorten a column's name.
std::string alignedText(
    const DataGrid& grid, const std::function<std::string(const std::string&)>& heading =
                              [](const std::string& name) { return name; });

// Comma-separated values with a line of names; cells that need it are in double quotes.
std::string csvText(const DataGrid& grid);

}  // namespace velmora::cli
