// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "hosts/results/report/run_results.h"

namespace velmora {

// The report of a run as one HTML page that needs nothing beside it: settings and inputs, totals,
// maps, charts, zone tables, messages and warnings, and what the units mean. Throws PlatformError
// when a grid cannot be read. What the page lacks since an input cannot be read stands on it, and
// in `missing`.
std::string reportPage(IPlatform& platform, const RunResults& results,
                       std::vector<std::string>* missing = nullptr);

}  // namespace velmora
