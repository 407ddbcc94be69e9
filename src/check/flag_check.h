// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "check/input_check.h"
#include "gis/features.h"

namespace velmora {

// Compares what the settings say that the weather table holds with the names of its fields: a
// quantity that is there but not taken would be estimated without a word. One finding a quantity.
std::vector<Finding> checkFlags(const ITable& weather, const RunSettings& settings);

}  // namespace velmora
