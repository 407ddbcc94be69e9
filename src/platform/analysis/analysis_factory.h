// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "gis/analysis.h"
#include "gis/polygon_analysis.h"
#include "gis/projection.h"

namespace velmora::platform {

class AnalysisFactory : public IAnalysisFactory {
  public:
    explicit AnalysisFactory(ISpatialReferenceFactory& spatialReferences)
        : spatialReferences_(spatialReferences) {}
    std::unique_ptr<IMapAlgebraOp> mapAlgebra() override;
    std::unique_ptr<IInterpolationOp> interpolation() override;
    std::unique_ptr<IConversionOp> conversion() override;
    std::unique_ptr<IZonalOp> zonal() override;
    std::unique_ptr<IOverlayOp> overlay() override;
    RasterPtr constant(const GridGeometry& geometry, float value) override;

  private:
    ISpatialReferenceFactory& spatialReferences_;
};

}  // namespace velmora::platform
