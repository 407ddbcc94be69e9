// SPDX-License-Identifier: MIT
#pragma once

#include "gis/zonal_tables.h"
#include "settings/run_settings.h"

namespace velmora {

inline ZonalTableSettings zonalTableSettings(const RunSettings& settings) {
    return {settings.OutputWorkspace, settings.Zones, settings.ZoneField, settings.yearNumber()};
}

}  // namespace velmora
