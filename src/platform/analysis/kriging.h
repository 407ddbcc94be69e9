// SPDX-License-Identifier: MIT
// Ordinary kriging surfaces.
#pragma once

#include <memory>
#include <vector>

#include "gis/rasters.h"
#include "platform/analysis/kriging_system.h"
#include "platform/analysis/neighbour_sets.h"

namespace velmora::platform {

// The surface of the stations' values, in the order of the stations of the sets; no raster when the
// system of a set has no solution. The model's sill is positive. Solves the system of every set,
// and keeps its coefficients alone: months share the sets, but hardly ever a model.
RasterPtr krigedSurface(std::shared_ptr<const NeighbourSets> sets, const SphericalModel& model,
                        const std::vector<double>& values);

}  // namespace velmora::platform
