// SPDX-License-Identifier: MIT
// What `velmora run all` says at its end: steps, what they made, and the zones' totals.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gis/application.h"
#include "hosts/cli/step_run.h"
#include "settings/run_settings.h"

namespace velmora::cli {

void printSummary(IPlatform& platform, const RunSettings& settings,
                  const std::vector<StepResult>& results);

// Without settings there is nothing of the output folder; `stoppedAt` is "" when all is done, else
// the step at which the chain stopped, and `goOnWith` the command line that goes on.
void printSummaryJson(IPlatform& platform, const std::optional<RunSettings>& settings,
                      const std::vector<StepResult>& results, const std::string& stoppedAt,
                      const std::string& goOnWith);

}  // namespace velmora::cli
