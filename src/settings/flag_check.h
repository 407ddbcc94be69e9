// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "gis/features.h"
#include "settings/input_check.h"

namespace velmora {

// Compares what the settings say that the weather table holds with the names of its fields: a
// quantity that is there but not taken would be estimated without a word. One finding a quantity.
std::vector<Finding> checkFlags(const ITable& weather, const RunSettings& settings);

// A sentence for each quantity that an inspection of fields with these names does not find, because
// the case of their letters differs.
std::vector<std::string> fieldsInOtherCase(const std::vector<std::string>& names);

}  // namespace velmora
