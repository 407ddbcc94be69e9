// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora {

// The style sheet of the report. On paper each page is headed by `heading`, and `foot` stands at
// its foot.
std::string reportStyle(const std::string& heading, const std::string& foot);

}  // namespace velmora
