// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "check/input_check.h"
#include "modelling/weather_stations.h"

namespace velmora {

// Compares the weather of the stations with what the sun and the month allow: radiation with the
// extraterrestrial radiation of the station's latitude, dew points with the temperatures, and the
// middle of all values of a quantity with what it would be in another unit. Warnings alone: a run
// takes every value within the valid range. `crs` is that of the stations' positions; without one
// nothing that needs a latitude is said. Fields that cannot be read are left to other checks.
std::vector<Finding> checkPhysics(IPlatform& platform, const RunSettings& settings,
                                  const WeatherStations& stations, const std::string& crs,
                                  const CheckScope& scope);

}  // namespace velmora
