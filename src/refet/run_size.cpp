// SPDX-License-Identifier: MIT
#include "refet/run_size.h"

#include <cmath>

#include "gis/errors.h"
#include "gis/numbers.h"

namespace velmora {

namespace {

// A grid holds 4 bytes a cell, some more in tiles that are not full, and folders and small files.
constexpr double kGridBytesPerCell = 4.25;
constexpr double kBytesBesideCells = 4096;
constexpr double kWorkDatabaseBytesPerCell = 92;  // a row of its table
// Surfaces and reference ET of a month, by methods with full weather and by temperatures alone.
constexpr std::size_t kGridsOfFullWeather = 6;
constexpr std::size_t kGridsOfTemperatures = 3;
constexpr std::size_t kGridsOfNoMonth = 2;  // NewDEM, RsTemplate

}  // namespace

double bytesOfGrids(std::size_t cells, std::size_t grids) {
    return static_cast<double>(grids) *
           (static_cast<double>(cells) * kGridBytesPerCell + kBytesBesideCells);
}

double bytesOfRun(const RunSettings& settings, std::size_t cells, bool withDatabase) {
    const std::size_t ofMonth =
        settings.needsFullWeather() ? kGridsOfFullWeather : kGridsOfTemperatures;
    return bytesOfGrids(cells, ofMonth * settings.months().size() + kGridsOfNoMonth) +
           (withDatabase ? static_cast<double>(cells) * kWorkDatabaseBytesPerCell : 0);
}

std::string sizeText(double bytes) {
    return bytes < 1e9 ? numberText(std::ceil(bytes / 1e6)) + " MB"
                       : numberText(std::round(bytes / 1e8) / 10) + " GB";
}

void requireRoom(const IFileSystem& files, const RunSettings& settings,
                 const GridGeometry& geometry, bool withDatabase) {
    const auto room = files.freeSpace(settings.OutputWorkspace);
    const double bytes = bytesOfRun(settings, geometry.cells(), withDatabase);
    if (!room || static_cast<double>(*room) >= bytes) return;
    throw PlatformError("A cell size of " + numberText(geometry.cellSize) + " m makes " +
                            std::to_string(geometry.columns) + " x " +
                            std::to_string(geometry.rows) + " cells, whose reference ET takes " +
                            sizeText(bytes) + " on disk, and " + settings.OutputWorkspace +
                            " has " + sizeText(static_cast<double>(*room)) +
                            " left: make room, or give a larger cell size",
                        {.file = settings.OutputWorkspace});
}

}  // namespace velmora
