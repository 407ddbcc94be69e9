// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hosts/results/report/run_results.h"

namespace velmora {

// What the command's last runs told beside what their records keep, and what the check of the
// inputs says.
std::string messagesSection(const RunResults& results);

}  // namespace velmora
