// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

// The terrain of the run's grid with the zones and the weather stations, as an SVG drawing in
// HTML. Throws PlatformError when an input cannot be read.
std::string stationMap(IPlatform& platform, const RunSettings& settings);

}  // namespace velmora
