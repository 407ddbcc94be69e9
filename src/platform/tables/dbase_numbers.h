// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::platform {

// Whether the text of a numeric dBASE field is a number of single precision's range, or none: only
// blanks or zero bytes, or only asterisks, with which many programs (GDAL among them) fill what has
// no value.
bool isDbaseNumber(std::string_view text);

// Throws PlatformError naming table, record and field unless the numeric field, counted from 0,
// holds numbers or nothing in all these records of the file. GDAL reads "abc" as 0 and "12,5"
// as 12.
void requireNumbers(const std::string& table, std::size_t field,
                    const std::vector<std::size_t>& records);

// The same for all numeric fields, in one pass over the file that keeps nothing.
void requireNumbers(const std::string& table, const std::vector<std::size_t>& records);

}  // namespace velmora::platform
