// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "check/input_check.h"

namespace velmora {

// The findings about what the irrigation efficiency needs: crop types of the land cover, land cover
// and zones that can be cut by each other, and the irrigation database. Says nothing of layers that
// are not set or cannot be opened: other checks do. The quick check looks at no shapes.
std::vector<Finding> checkIrrigation(IPlatform& platform, const RunSettings& settings,
                                     bool quick = false);

}  // namespace velmora
