// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

// The path of a month's reference precipitation grid: the path of any one month's, its last two
// characters replaced by the month's two digits. Throws PlatformError for a path of fewer
// characters.
std::string prismGridPath(const std::string& path, int month);

// The reference grid of a month. Throws PlatformError, which says how the grids are named, when
// there is none.
RasterPtr openReferenceGrid(IPlatform& platform, const RunSettings& settings, int month);

}  // namespace velmora
