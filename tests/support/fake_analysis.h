// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "gis/analysis.h"
#include "gis/polygon_analysis.h"

namespace velmora::test {

// The operations in memory. Polygons have one ring each; there is no overlay.
class FakeAnalysis : public IAnalysisFactory {
  public:
    std::unique_ptr<IMapAlgebraOp> mapAlgebra() override;
    std::unique_ptr<IInterpolationOp> interpolation() override;
    std::unique_ptr<IConversionOp> conversion() override;
    std::unique_ptr<IZonalOp> zonal() override;
    std::unique_ptr<IOverlayOp> overlay() override;
    RasterPtr constant(const GridGeometry& geometry, float value) override;
};

}  // namespace velmora::test
