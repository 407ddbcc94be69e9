// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gis/diagnostics.h"
#include "modelling/weather_stations.h"

namespace velmora {

// How a surface was made.
struct SurfaceRecipe {
    std::string surface;  // "PPT_Jan"
    std::string field;    // the field of the weather table, qualified
    std::string value;    // the field whose values are detrended or interpolated as they are
    std::vector<std::size_t> valid;
    std::string validRange;  // "between 0 and 1000", for the reasons of the others
    bool detrended = false;
    bool kriged = false;
    bool notNegative = false;  // negative estimates count as 0
    bool zerosCount = false;  // stations whose field holds 0 have an error though they take no part
    // What a station's interpolated value is multiplied by to give a value of the weather table;
    // empty for 1 everywhere.
    std::vector<std::optional<double>> factors;
};

// Looks into the surface: its regression, its semivariogram, the stations that take no part, and
// its error at each station when everything (the line, the model, the interpolation) is made anew
// without that station.
SurfaceDiagnostics diagnose(IAnalysisFactory& analysis, const WeatherStations& stations,
                            const SurfaceRecipe& recipe);

}  // namespace velmora
