// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace velmora {

// "Jan" ... "Dec" for 1 ... 12, "" for any other number.
std::string GetMonthName(int month);

// 1 ... 12, or 0 for any other text. The comparison is exact: "jan" is no month.
int GetMonthNumber(std::string_view name);

}  // namespace velmora
