// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hosts/results/report/run_results.h"

namespace velmora {

// Every row of the zone tables in both readings, with the zones that have none and what is strange
// about areas.
std::string tablesSection(const RunResults& results);

// What the totals and tables rest on, said where they stand.
std::string unitNote();

}  // namespace velmora
