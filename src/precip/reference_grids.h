// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "gis/application.h"
#include "modelling/weather_stations.h"
#include "settings/run_settings.h"

namespace velmora {

// The path of a month's reference precipitation grid: the path of any one month's, its last two
// characters replaced by the month's two digits. Throws PlatformError for a path of fewer
// characters.
std::string prismGridPath(const std::string& path, int month);

// The reference grid of a month. Throws PlatformError, which says how the grids are named, when
// there is none.
std::unique_ptr<IRasterDataset> openReferenceGrid(IPlatform& platform, const RunSettings& settings,
                                                  int month);

// The value of the grid under each station, which goes into the stations' working field; a station
// without one keeps what it has there. Positions are in `crs` (WKT).
std::vector<std::optional<double>> sampleReference(IPlatform& platform, const IRaster& grid,
                                                   const std::string& crs,
                                                   WeatherStations& stations);

}  // namespace velmora
