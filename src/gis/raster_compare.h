// SPDX-License-Identifier: MIT
// Rasters that could be taken for one another.
#pragma once

#include <string>
#include <vector>

#include "gis/prompts.h"
#include "gis/rasters.h"

namespace velmora {

// Whether both have the same cells with the same values. Throws PlatformError when one cannot be
// read.
bool sameValues(const IRaster& a, const IRaster& b);

// A sentence for each raster file that the dataset's name could stand for too, that is not read and
// holds something else: which of the two is meant, only the user knows. A file that is no raster
// says nothing.
std::vector<std::string> passedOverTexts(IRasterWorkspaceFactory& rasters,
                                         const IRasterDataset& dataset);

// Tells them as notices.
void tellPassedOver(IPrompts& prompts, IRasterWorkspaceFactory& rasters,
                    const IRasterDataset& dataset);

}  // namespace velmora
