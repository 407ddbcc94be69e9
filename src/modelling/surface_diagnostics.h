// SPDX-License-Identifier: MIT
#pragma once

#include "gis/diagnostics.h"
#include "modelling/station_surface.h"

namespace velmora {

// Looks into a surface that has been made: its regression, its semivariogram, the stations that
// take no part, and its error at each station when everything (the line, the model, the
// interpolation) is made anew without that station.
SurfaceDiagnostics diagnose(IAnalysisFactory& analysis, StationSurface& surface);

}  // namespace velmora
