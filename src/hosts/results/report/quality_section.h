// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hosts/results/report/run_results.h"
#include "hosts/results/report/small_maps.h"

namespace velmora {

// What the record of reference ET tells of its cells (modelling/quality.h): flags by month, and
// maps of those months whose flags the run has made grids of.
std::string qualitySection(IPlatform& platform, const RunResults& results, SmallMaps& maps);

// Whether a warning of a step is told in that section.
bool isOfQuality(const RecordedStep& step, const std::string& warning);

}  // namespace velmora
