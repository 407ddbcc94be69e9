// SPDX-License-Identifier: MIT
// The sample basin: made-up terrain and fields with real station normals and published crop
// coefficients, in exactly the formats that the model reads.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "gis/application.h"

namespace velmora::examples {

// Makes the inputs in `folder`, replacing what an earlier call made there: the grid "dem",
// stations.shp, weather.dbf, the reference precipitation grids refppt_01 to refppt_12, domain.shp,
// zones.shp, landcover.shp, kc.dbf and IrDB.mdb, and the empty folder "output". Throws
// PlatformError, also for a folder that holds anything else than what an earlier call made there.
void makeSampleBasin(IPlatform& platform, const std::string& folder);

// The settings of a run over the basin, as Field=Value.
std::vector<std::string> sampleSettings(const std::string& folder);

}  // namespace velmora::examples
