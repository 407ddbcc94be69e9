// SPDX-License-Identifier: MIT
// Grids of the output folder that are no longer what a step would expect: left from an earlier run,
// made for other cells or another year, or older than the grid of which they are a copy.
#pragma once

#include <string>
#include <vector>

#include "gis/application.h"
#include "modelling/step_inputs.h"
#include "settings/run_settings.h"

namespace velmora {

// What is old among the grids that the step ("cropet", "nir" or "irr"; others read none) would read
// on these settings, one sentence each. Grids that no noted run speaks of are the user's own and
// count as good; where the note of a run cannot be read, a sentence says so, which stands in
// `unreadable` as well. A missing folder, or a grid that cannot be read, is passed over: the step
// says so itself.
std::vector<std::string> oldInputs(IPlatform& platform, const RunSettings& settings,
                                   const std::string& step,
                                   std::vector<std::string>* unreadable = nullptr);

// Whether under the name that is read stands a grid that is older than the made one and differs
// from it; false when one of them is not there. Throws PlatformError when one cannot be read.
bool isOutdated(const IRasterWorkspace& workspace, const StepInputs::Copy& copy);

}  // namespace velmora
