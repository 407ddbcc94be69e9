// SPDX-License-Identifier: MIT
// Kc maps: one grid of crop coefficients per month of the settings' period, "Kc_" + month + "_" +
// method, over the land-cover polygons.
#pragma once

#include <string>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

// What the Kc-Map Maker gives to a run.
struct KcMapInputs {
    std::string landCover;  // path of the polygon shapefile
    std::string cropField;  // its field that holds the crop type
    std::string kcTable;    // path of the crop coefficient table
    double cellSize = 0;    // metres
};

// 500 above 500, 100 below 100, else the size itself.
double boundedKcCellSize(double cellSize);

// Makes the maps and shows the messages of the way. Polygons whose crop the table lacks, or whose
// coefficient of the month is 0, make no cells. Throws PlatformError, or Cancelled; the months
// before stay.
void makeKcMaps(IApplication& application, const RunSettings& settings, const KcMapInputs& inputs);

// Adds the period's maps to the map document. Throws PlatformError.
void showKcMaps(IApplication& application, const RunSettings& settings);

}  // namespace velmora
