// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hosts/cli/report/run_results.h"

namespace velmora::cli {

// The report of a run as one HTML page that needs nothing beside it: settings and inputs, totals,
// maps, charts, zone tables, messages and warnings, and what the units mean. Throws PlatformError
// when a grid cannot be read.
std::string reportPage(IPlatform& platform, const RunResults& results);

}  // namespace velmora::cli
