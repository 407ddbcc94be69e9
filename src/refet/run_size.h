// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "gis/files.h"
#include "gis/grid_geometry.h"
#include "settings/run_settings.h"

namespace velmora {

// Bytes that so many grids take.
double bytesOfGrids(std::size_t cells, std::size_t grids);

// Bytes that a reference ET run leaves in its output folder: its grids, and the work database.
double bytesOfRun(const RunSettings& settings, std::size_t cells, bool withDatabase = true);

// "722 MB", "648.9 GB"
std::string sizeText(double bytes);

// Throws PlatformError, which names the cell size and both figures, when a reference ET run on the
// grid needs more room than the disk of its output folder has.
void requireRoom(const IFileSystem& files, const RunSettings& settings,
                 const GridGeometry& geometry, bool withDatabase = true);

}  // namespace velmora
