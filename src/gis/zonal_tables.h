// SPDX-License-Identifier: MIT
// Tables that summarise monthly grids by zone (mduGisFunctions): for every month and zone the area
// of the zone and of its cells with data, acres, the month's depth of water, feet, and its volume,
// acre-feet. A grid's mean counts as millimetres per day, whatever the grid's own unit.
#pragma once

#include <memory>
#include <string>

#include "gis/application.h"

namespace velmora {

// What the tables of a run take from its settings.
struct ZonalTableSettings {
    std::string outputWorkspace;
    std::string zones;      // path of the zone polygon shapefile
    std::string zoneField;  // its key field
    int year = 0;
};

// February has 29 days in every year that is a multiple of 4; 0 for no month.
int zonalDaysOfMonth(int month, int year);

// Makes an empty table `name` in the workspace folder, replacing an older one. Its fields, "CET"
// standing for the last three characters of the name: ZoneUnit, Area_T_ac, Area_C_ac, Month,
// CET_D_ft, CET_V_acft. True when the table is there. A failure is shown; an older table then stays
// as it was, and rows of this run must not go into it.
bool CreateStatTable(IPlatform& platform, IPrompts& prompts, const std::string& workspacePath,
                     const std::string& name);

// Appends a month's rows to the table, one per zone with data. Throws PlatformError when the zones
// cannot be opened or have no such field; failures of the table are shown.
void MakeZonalStat(IPlatform& platform, IPrompts& prompts, const ZonalTableSettings& settings,
                   const RasterPtr& values, const std::string& tableName, int month);

// The rows of a zonal result: row i takes the polygon area of zone feature i, whatever its key. A
// key longer than its field is cut, which is told once. A failure is shown; rows before it stay.
void GotoStatTable(IPlatform& platform, IPrompts& prompts, int month, int year,
                   const ITable& zonalResult, const std::shared_ptr<ITable>& statTable,
                   const std::string& zoneField, const std::string& depthField,
                   const IFeatureClass& zoneClass);

}  // namespace velmora
