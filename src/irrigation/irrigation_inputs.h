// SPDX-License-Identifier: MIT
// Where the irrigation steps find what the settings do not name themselves.
#pragma once

#include <string>

#include "gis/text.h"
#include "settings/run_settings.h"

namespace velmora {

// The field of the land cover that names a polygon's crop type.
constexpr const char* kCropField = "Descriptio";

// "IrDB.mdb" in the folder of the zone shapefile.
inline std::string irrigationDatabasePath(const RunSettings& settings) {
    return joinedPath(parentFolderName(settings.Zones), "IrDB.mdb");
}

}  // namespace velmora
