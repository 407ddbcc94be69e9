// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

#include "gis/analysis.h"
#include "tests/support/fake_environment.h"

namespace velmora::test {

// Map algebra that computes a result whole and at once. Inputs are sampled at the cell centres; it
// knows one coordinate system.
class FakeMapAlgebra : public IMapAlgebraOp {
  public:
    FakeEnvironment& environment() override { return environment_; }
    void BindRaster(RasterPtr raster, const std::string& name) override;
    void UnbindRaster(const std::string& name) override { bound_.erase(name); }
    RasterPtr Execute(const std::string& expression) override;

  private:
    RasterPtr bound(const std::string& name) const;

    FakeEnvironment environment_;
    std::map<std::string, RasterPtr> bound_;
};

}  // namespace velmora::test
