// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora {

// docs/departures.md: where our reference ET departs from the papers that it follows, and what each
// departure is worth by latitude and month.
std::string departuresPage();

}  // namespace velmora
