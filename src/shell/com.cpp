// SPDX-License-Identifier: MIT
#include "shell/com.h"

#include <cstdio>

namespace velmora {

namespace {

constexpr const char* kForm =
    "{%08X-%04hX-%04hX-%02hhX%02hhX-%02hhX%02hhX%02hhX%02hhX%02hhX%02hhX}";

}  // namespace

std::string guidText(const Guid& g) {
    std::array<char, 40> text{};
    const auto& d = g.data4;
    std::snprintf(text.data(), text.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  g.data1, g.data2, g.data3, d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
    return text.data();
}

bool parseGuid(const std::string& text, Guid& g) {
    auto& d = g.data4;
    return std::sscanf(text.c_str(), kForm, &g.data1, &g.data2, &g.data3, &d[0], &d[1], &d[2],
                       &d[3], &d[4], &d[5], &d[6], &d[7]) == 11 &&
           guidText(g) == text;
}

}  // namespace velmora
