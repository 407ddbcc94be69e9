// SPDX-License-Identifier: MIT
// A crop run with grids of one value that stand for crop ET, precipitation and efficiency.
#pragma once

#include <string>
#include <vector>

#include "gis/analysis.h"
#include "tests/support/crop_domain.h"

namespace velmora::test {

class IrrigationDomain : public CropDomain {
  public:
    using CropDomain::CropDomain;

    // Cells of 500 m over the domain's upper left part.
    const GridGeometry cells{30, 18, 400000, 4500000, 500, geometry().crs};

    void save(const std::string& name, const RasterPtr& grid);
    RasterPtr filled(float value) const;
    // Crop ET as many units as the month's number, precipitation 2.
    void saveMonths(int first, int last);
    // Polygons with a crop type ("Descriptio") and an area, in place of the fixture's own.
    void makeCropLand(const std::vector<Shape>& shapes);
    // Lets commands and forms find the settings.
    void storeSettings();
};

// A row of cells of one metre.
RasterPtr rowOf(const std::vector<float>& values);

}  // namespace velmora::test
