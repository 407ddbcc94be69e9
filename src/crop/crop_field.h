// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>

#include "gis/features.h"

namespace velmora {

// The text field of the land cover in which most polygons name one of the crops, else its first
// text field; "" without any.
std::string fieldOfCrops(const ITable& landCover, const std::set<std::string>& crops);

}  // namespace velmora
