// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "gis/analysis.h"
#include "gis/projection.h"
#include "platform/analysis/environment.h"

namespace velmora::platform {

// Map algebra whose results are evaluated block by block when they are read.
class MapAlgebraOp : public IMapAlgebraOp {
  public:
    explicit MapAlgebraOp(ISpatialReferenceFactory& spatialReferences)
        : spatialReferences_(spatialReferences) {}

    IRasterAnalysisEnvironment& environment() override { return environment_; }
    void BindRaster(RasterPtr raster, const std::string& name) override;
    void UnbindRaster(const std::string& name) override;
    RasterPtr Execute(const std::string& expression) override;

  private:
    RasterPtr bound(const std::string& name, const std::string& expression) const;

    ISpatialReferenceFactory& spatialReferences_;
    AnalysisEnvironment environment_;
    std::vector<std::pair<std::string, RasterPtr>> bindings_;
};

}  // namespace velmora::platform
