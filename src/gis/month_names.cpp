// SPDX-License-Identifier: MIT
#include "gis/month_names.h"

#include <algorithm>
#include <array>

namespace velmora {

namespace {

constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

}  // namespace

std::string GetMonthName(int month) {
    if (month < 1 || month > 12) return {};
    return std::string(kMonths[static_cast<std::size_t>(month - 1)]);
}

int GetMonthNumber(std::string_view name) {
    const auto* found = std::find(kMonths.begin(), kMonths.end(), name);
    return found == kMonths.end() ? 0 : static_cast<int>(found - kMonths.begin()) + 1;
}

}  // namespace velmora
