// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hosts/results/report/run_results.h"

namespace velmora {

// What the runs have read and the settings they were made with, by their records; the settings of
// the present where there are no records, which is said.
std::string inputsSection(const RunResults& results);

}  // namespace velmora
