// SPDX-License-Identifier: MIT
// A crop run with grids of one value that stand for crop ET, precipitation and efficiency.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "gis/analysis.h"
#include "tests/support/crop_fixture.h"

namespace velmora::test {

class IrrigationFixture : public CropFixture {
  public:
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

// Map algebra that notes the names it is given and the expressions it executes, in their order.
class RecordingAlgebra : public IMapAlgebraOp {
  public:
    explicit RecordingAlgebra(IMapAlgebraOp& real) : real_(real) {}
    IRasterAnalysisEnvironment& environment() override { return real_.environment(); }
    void BindRaster(RasterPtr raster, const std::string& name) override {
        done.push_back(name);
        real_.BindRaster(std::move(raster), name);
    }
    void UnbindRaster(const std::string& name) override { real_.UnbindRaster(name); }
    RasterPtr Execute(const std::string& expression) override {
        done.push_back(expression);
        return real_.Execute(expression);
    }
    std::vector<std::string> done;

  private:
    IMapAlgebraOp& real_;
};

// A row of cells of one metre.
RasterPtr rowOf(const std::vector<float>& values);

}  // namespace velmora::test
