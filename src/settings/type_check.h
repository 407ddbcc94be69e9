// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "gis/features.h"
#include "settings/input_check.h"

namespace velmora {

// The crop types of the land cover: whether it has the field, and types that differ in capitals
// alone, which are types of their own.
std::vector<Finding> checkTypes(const ITable& landCover, const std::string& field);

}  // namespace velmora
