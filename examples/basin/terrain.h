// SPDX-License-Identifier: MIT
#pragma once

#include "gis/grid.h"

namespace velmora::examples {

// The cells of the sample basin: 250 x 300 cells of 200 m in UTM zone 12 north (NAD 1983).
GridGeometry basinGeometry(const std::string& crs);

// A made-up mountain basin: a valley floor at about 1200 m that winds from north to south between
// two ranges of up to 3400 m. The same numbers on every machine.
Grid basinTerrain(const GridGeometry& geometry);

}  // namespace velmora::examples
