// SPDX-License-Identifier: MIT
#pragma once

#include "gis/diagnostics.h"
#include "modelling/station_surface.h"

namespace velmora {

// Looks into a surface that has been made: its regression, its semivariogram, the stations that
// take no part, and its error at each station when everything (the line, the model, the
// interpolation) is made anew without that station.
// The stations that take no part in a surface, and why, in the order of their records.
std::vector<ExcludedStation> stationsLeftOut(const StationSurface& surface);

SurfaceDiagnostics diagnose(IAnalysisFactory& analysis, StationSurface& surface);

}  // namespace velmora
