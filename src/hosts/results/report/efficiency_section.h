// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "hosts/results/report/run_results.h"

namespace velmora {

// The irrigation database that the run of the efficiency has read: shares, efficiencies and
// conveyance by zone and crop, the zones' methods, and where the figures come from. Where it cannot
// be read, the page says why, and so does a text that is added to `missing` unless that is nullptr.
// "" where no record names a database.
std::string efficiencySection(IPlatform& platform, const RunResults& results,
                              std::vector<std::string>* missing);

}  // namespace velmora
