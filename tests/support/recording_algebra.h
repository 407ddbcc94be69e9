// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "gis/analysis.h"

namespace velmora::test {

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

}  // namespace velmora::test
