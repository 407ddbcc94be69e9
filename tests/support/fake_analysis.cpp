// SPDX-License-Identifier: MIT
#include "tests/support/fake_analysis.h"

#include <utility>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "tests/support/fake_interpolation.h"
#include "tests/support/fake_map_algebra.h"
#include "tests/support/fake_polygon_ops.h"

namespace velmora::test {

std::unique_ptr<IMapAlgebraOp> FakeAnalysis::mapAlgebra() {
    return std::make_unique<FakeMapAlgebra>();
}

std::unique_ptr<IInterpolationOp> FakeAnalysis::interpolation() {
    return std::make_unique<FakeInterpolation>();
}

std::unique_ptr<IConversionOp> FakeAnalysis::conversion() {
    return std::make_unique<FakeConversion>();
}

std::unique_ptr<IZonalOp> FakeAnalysis::zonal() { return std::make_unique<FakeZonal>(); }

std::unique_ptr<IOverlayOp> FakeAnalysis::overlay() {
    throw PlatformError("The platform of the tests cuts no polygons");
}

RasterPtr FakeAnalysis::constant(const GridGeometry& geometry, float value) {
    return std::make_shared<MemoryRaster>(Grid(geometry, value));
}

}  // namespace velmora::test
