// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "check/input_check.h"
#include "gis/files.h"
#include "gis/grid_geometry.h"

namespace velmora {

// What all steps of a run on these cells will take on disk and of time, in one note; and a warning
// when the output folder's disk has less room than that.
std::vector<Finding> checkRunNeeds(const IFileSystem& files, const RunSettings& settings,
                                   const GridGeometry& geometry);

// Bytes that all steps leave in the output folder.
double bytesOnDisk(const RunSettings& settings, std::size_t cells);

}  // namespace velmora
