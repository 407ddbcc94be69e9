// SPDX-License-Identifier: MIT
// Monthly means of the quantities of a run over the same cells.
#pragma once

#include "hosts/results/report/run_results.h"

namespace velmora {

// Of each zone that has a cell, from the account: means over its cells with crop ET and
// precipitation, or with crop ET in months without precipitation.
std::vector<ZoneMeans> zoneMeans(const Account& account);
// Of all these cells; with reference ET over them. Throws PlatformError when a grid cannot be read.
MonthlyMeans basinMeans(IPlatform& platform, const Account& account);

}  // namespace velmora
