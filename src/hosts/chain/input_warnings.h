// SPDX-License-Identifier: MIT
// What a host says of the inputs before a step reads them.
#pragma once

#include <string>
#include <vector>

#include "check/input_check.h"
#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

// "3 warnings in the inputs: velmora check shows them" of what a quick look at the inputs of a step
// ("refet", or "all") finds, "" for nothing. Never fails: what cannot be read the step tells.
std::string inputWarnings(IPlatform& platform, const RunSettings& settings,
                          const std::string& step);

// The same of the stored settings, as a notice.
void tellInputWarnings(IApplication& application, const std::string& step);

// All warnings and errors about the inputs of the step.
std::vector<Finding> doubtsOfInputs(IPlatform& platform, const RunSettings& settings,
                                    const std::string& step);

// "1 error, 86 warnings of 2 kinds"; "" for neither.
std::string doubtCounts(const std::vector<Finding>& findings);

}  // namespace velmora
