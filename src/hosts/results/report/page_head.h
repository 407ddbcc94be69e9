// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hosts/results/report/run_results.h"

namespace velmora {

// The page from its first byte to its sections: style, title, what the results were made for, and
// links to the sections.
std::string pageHead(const RunResults& results);

}  // namespace velmora
