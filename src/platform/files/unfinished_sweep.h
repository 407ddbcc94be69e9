// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora::platform {

// Removes what killed processes left of `path` beside it: its unfinished forms (unfinishedPath),
// with their journals, of processes that do not live any more.
void sweepUnfinished(const std::string& path) noexcept;

}  // namespace velmora::platform
