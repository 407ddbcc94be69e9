// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hosts/results/report/run_results.h"

namespace velmora {

// The months of the basin and of each zone as lines, all over the same cells.
std::string chartsSection(const RunResults& results);

}  // namespace velmora
