// SPDX-License-Identifier: MIT
#pragma once

#include "gis/files.h"
#include "gis/grid_geometry.h"

namespace velmora {

// Bytes that a reference ET run on the grid takes beside what the program itself does.
double memoryForRun(const GridGeometry& geometry);

// Throws PlatformError, which names the cell size and the gigabytes, when the cell table of a
// reference ET run on the grid does not fit into the free memory. What
// goes beside it may need more bytes per cell.
void requireMemory(const IFileSystem& files, const GridGeometry& geometry,
                   double moreBytesPerCell = 0);

}  // namespace velmora
