// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "check/input_check.h"
#include "gis/rasters.h"
#include "modelling/weather_stations.h"

namespace velmora {

// How much of the modelling extent lies above or below all stations, and by how many metres: a
// note, where some does. `metres` is the DEM on the run's cells, of which a row here and there is
// read. Says nothing where stations cannot be read: other checks do.
std::vector<Finding> checkExtrapolation(IPlatform& platform, const RunSettings& settings,
                                        const IRaster& metres);

// The months in which the temperatures of the stations have no significant trend over elevation
// (gis/trend_test.h): a note for each quantity. Months that a run could not make are left to other
// checks.
std::vector<Finding> checkTrends(const RunSettings& settings, const WeatherStations& stations);

}  // namespace velmora
