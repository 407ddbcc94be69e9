// SPDX-License-Identifier: MIT
#include "refet/run_size.h"

#include "gis/errors.h"
#include "gis/numbers.h"

namespace velmora {

namespace {

constexpr double kBytesPerCell = 130;  // of the cell table and what passes through memory beside it

}  // namespace

double memoryForRun(const GridGeometry& geometry) {
    return kBytesPerCell * static_cast<double>(geometry.cells());
}

void requireMemory(const IFileSystem& files, const GridGeometry& geometry,
                   double moreBytesPerCell) {
    const double bytes =
        memoryForRun(geometry) + moreBytesPerCell * static_cast<double>(geometry.cells());
    if (bytes <= static_cast<double>(files.freeMemory())) return;
    throw PlatformError("A cell size of " + numberText(geometry.cellSize) + " m makes " +
                        std::to_string(geometry.columns) + " x " + std::to_string(geometry.rows) +
                        " cells, for which this machine has not enough free memory (" +
                        formatPlaces(bytes / 1e9, 1) + " GB): give a larger cell size");
}

}  // namespace velmora
