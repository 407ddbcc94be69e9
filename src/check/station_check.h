// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "check/input_check.h"

namespace velmora {

// The findings about the weather stations and their weather table.
std::vector<Finding> checkStations(IPlatform& platform, const RunSettings& settings,
                                   const std::optional<GridGeometry>& geometry);

}  // namespace velmora
