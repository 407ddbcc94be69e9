// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "hosts/results/report/run_results.h"

namespace velmora {

// What the results were made of, from the records: runs, inputs with their hashes, stations that
// were left out, and libraries.
std::string madeOfSection(const RunResults& results);

}  // namespace velmora
