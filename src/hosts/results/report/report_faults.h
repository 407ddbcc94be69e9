// SPDX-License-Identifier: MIT
// Why results in an output folder are no evidence of one run of the chain.
#pragma once

#include <string>
#include <vector>

#include "hosts/results/report/run_results.h"

namespace velmora {

// What the records do not tell of the results; empty when each product has one. `mismatches` are
// lines ("PATH: what is wrong") of what the records tell otherwise than it stands; they come first.
std::vector<std::string> reportFaults(const RunResults& results,
                                      const std::vector<std::string>& mismatches);

// The faults on top of the page, "" without any.
std::string faultsBanner(const std::vector<std::string>& faults);

}  // namespace velmora
