// SPDX-License-Identifier: MIT
// The efficiency map: the land cover cut by the zones, each piece with the overall irrigation
// efficiency of its zone and crop, as the grid "IREF".
#pragma once

#include <string>

#include "gis/application.h"
#include "modelling/run_record.h"
#include "settings/run_settings.h"

namespace velmora {

// Makes the shapefile "Lu_Intersected" of the output folder: the land cover cut by the zones, with
// the fields of both. Repaired polygons are told. False after "Table QI failed", when a layer has
// no attributes. Throws PlatformError.
bool GetLuIntersected(IApplication& application, const RunSettings& settings);

// Gives every piece the IREF of its zone and crop from the irrigation database, 0 when it has none,
// all pieces in one transaction. Throws PlatformError, or Cancelled, and then
// the pieces keep the values that they had.
void GetIREF(IApplication& application, const RunSettings& settings,
             const std::string& databasePath);

// Makes the grid "IREF" of the pieces whose efficiency is not 0, on cells of the settings' size
// over the extent of the pieces. Throws PlatformError.
void makeEfficiencyGrid(IApplication& application, const RunSettings& settings, RunRecord& record);

// Says that it is made; once it has reached the disk.
void tellEfficiencyGrid(IApplication& application, const RunSettings& settings);

}  // namespace velmora
