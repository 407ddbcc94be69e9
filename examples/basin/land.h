// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "gis/features.h"
#include "gis/grid.h"

namespace velmora::examples {

// Six irrigation districts along the valley; the value of each is its name.
std::vector<NewFeature> basinZones(const GridGeometry& geometry);
std::vector<std::string> basinZoneNames();

// Fields on the valley floor, about every third under a centre pivot; values: crop, area in m2.
std::vector<NewFeature> basinFields(const Grid& terrain, const std::vector<std::string>& crops);

}  // namespace velmora::examples
