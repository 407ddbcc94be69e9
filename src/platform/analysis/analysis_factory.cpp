// SPDX-License-Identifier: MIT
#include "platform/analysis/analysis_factory.h"

#include <algorithm>
#include <utility>

#include "platform/analysis/conversion.h"
#include "platform/analysis/interpolation.h"
#include "platform/analysis/map_algebra.h"
#include "platform/analysis/overlay.h"
#include "platform/analysis/zonal.h"

namespace velmora::platform {

namespace {

class ConstantRaster : public IRaster {
  public:
    ConstantRaster(GridGeometry geometry, float value)
        : geometry_(std::move(geometry)), value_(value) {}
    const GridGeometry& geometry() const override { return geometry_; }
    void read(const CellBlock&, std::span<float> values) const override {
        std::fill(values.begin(), values.end(), value_);
    }

  private:
    GridGeometry geometry_;
    float value_;
};

}  // namespace

std::unique_ptr<IMapAlgebraOp> AnalysisFactory::mapAlgebra() {
    return std::make_unique<MapAlgebraOp>(spatialReferences_);
}

std::unique_ptr<IInterpolationOp> AnalysisFactory::interpolation() {
    return std::make_unique<InterpolationOp>();
}

std::unique_ptr<IConversionOp> AnalysisFactory::conversion() {
    return std::make_unique<ConversionOp>();
}

std::unique_ptr<IZonalOp> AnalysisFactory::zonal() { return std::make_unique<ZonalOp>(); }

std::unique_ptr<IOverlayOp> AnalysisFactory::overlay() { return std::make_unique<OverlayOp>(); }

RasterPtr AnalysisFactory::constant(const GridGeometry& geometry, float value) {
    return std::make_shared<ConstantRaster>(geometry, value);
}

}  // namespace velmora::platform
