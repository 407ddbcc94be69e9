// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "check/input_check.h"

namespace velmora {

// The findings about the weather stations and what the scope names of their weather table. The
// quick check does not try the surfaces.
std::vector<Finding> checkStations(IPlatform& platform, const RunSettings& settings,
                                   const std::optional<GridGeometry>& geometry,
                                   const CheckScope& scope = {});

}  // namespace velmora
