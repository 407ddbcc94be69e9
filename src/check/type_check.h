// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "check/input_check.h"
#include "gis/features.h"

namespace velmora {

// The crop types of the land cover: whether it has the field, and types that differ in capitals
// alone, which are types of their own.
std::vector<Finding> checkTypes(const ITable& landCover, const std::string& field);

}  // namespace velmora
