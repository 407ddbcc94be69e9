// SPDX-License-Identifier: MIT
// The modelling domain: the extent of one shapefile, and how many cells it makes.
#pragma once

#include <optional>
#include <string>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

struct CellCounts {
    int width = 0;
    int height = 0;
};

Envelope extentOf(IFeatureWorkspaceFactory& features, const std::string& providerPath);

// A 250th of the shorter side, in single precision.
float proposedCellSize(const Envelope& extent);

// Counts shown when a provider is chosen: whole cells, the rest cut off.
CellCounts truncatedCounts(const Envelope& extent, double cellSize);

// Counts shown when the cell size is edited: rounded to the nearest 16-bit integer, halves to the
// even neighbour. Nothing when a count is no such integer.
std::optional<CellCounts> roundedCounts(const Envelope& extent, double cellSize);

// The coordinate system of the domain (WKT), "" when no extent provider is set.
std::string domainCrs(IPlatform& platform, const RunSettings& settings);

// Throws PlatformError, naming the layer as `what`, when its coordinates are degrees or feet:
// cell sizes are metres. A layer without a coordinate system is taken to be in metres.
void requireMetres(IPlatform& platform, const IFeatureClass& layer, const std::string& what);

// The grid that every step of a run shares. Throws PlatformError when the extent provider has no
// coordinate system, or one in degrees or feet, or when the cell size makes no grid.
GridGeometry runGeometry(IPlatform& platform, const RunSettings& settings);

}  // namespace velmora
