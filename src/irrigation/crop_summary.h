// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "gis/application.h"
#include "irrigation/irrigation_inputs.h"

namespace velmora {

// Writes the crop types of the land cover, each once and sorted, into a dBASE table: DESCRIPTIO,
// the number of polygons COUNT, and SUM_AREA, the sum of their field AREA, or of their areas in
// square map units where the land cover has no such field. Polygons without a crop type do not
// count. Throws PlatformError.
void summarizeCrops(IPlatform& platform, const IFeatureClass& landCover, const std::string& path);

// The crop types of such a table, in its order. Throws PlatformError.
std::vector<std::string> summarizedCrops(IPlatform& platform, const std::string& path);

}  // namespace velmora
