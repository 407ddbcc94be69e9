// SPDX-License-Identifier: MIT
#include "platform/analysis/map_algebra.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "platform/features/spatial_reference.h"

namespace velmora::platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

RasterPtr raster(const GridGeometry& geometry, std::vector<float> values) {
    Grid grid(geometry);
    grid.values = std::move(values);
    return std::make_shared<MemoryRaster>(grid);
}

struct MapAlgebra : testing::Test {
    SpatialReferenceFactory systems;
    MapAlgebraOp op{systems};
    const GridGeometry cells{3, 2, 0, 2, 1, ""};

    void environment(const Envelope& extent, double cellSize, const std::string& crs = "") {
        op.environment().SetCellSize(EnvironmentSetting::explicitValue, cellSize);
        op.environment().SetExtent(EnvironmentSetting::explicitValue, extent, crs);
    }
};

TEST_F(MapAlgebra, CellsOfTwiceTheSizeTakeEverySecondOne) {
    Grid dem({40, 1, 412345.678, 92.7662, 92.7662, ""});
    for (int c = 0; c < 40; ++c) dem.at(c, 0) = static_cast<float>(c);
    op.BindRaster(std::make_shared<MemoryRaster>(dem), "DEM");
    useCells(op.environment(), {20, 1, 412345.678, 92.7662 + 40, 185.5324, ""});
    const Grid sampled = wholeGrid(*op.Execute("[DEM]"));
    for (int c = 0; c < 20; ++c) EXPECT_EQ(sampled.at(c, 0), static_cast<float>(2 * c + 1));
}

// Zero is stored without a sign, as over a land below the sea.
TEST_F(MapAlgebra, ZeroHasNoSign) {
    environment({0, 0, 3, 2}, 1);
    op.BindRaster(raster(cells, {-86, -1, 0, 1, 2, 3}), "DEM");
    for (const float value : wholeGrid(*op.Execute("[DEM] * 0")).values) {
        EXPECT_EQ(value, 0);
        EXPECT_FALSE(std::signbit(value));
    }
}

TEST_F(MapAlgebra, CellByCell) {
    environment({0, 0, 3, 2}, 1);
    op.BindRaster(raster(cells, {1, 2, 3, 4, kNoData, 6}), "A");
    op.BindRaster(raster(cells, {1, 0, 2, 2, 2, 2}), "B");
    EXPECT_THAT(wholeGrid(*op.Execute("[A] / [B] + 1")).values,
                ElementsAre(2, kNoData, 2.5, 3, kNoData, 4));
    EXPECT_THAT(wholeGrid(*op.Execute(" 0.5 ")).values, ElementsAre(.5, .5, .5, .5, .5, .5));
}

TEST_F(MapAlgebra, ResultsThatNoSingleHoldsAreNoData) {
    environment({0, 0, 3, 2}, 1);
    op.BindRaster(raster(cells, {1e30F, 1, 1, 1, 1, 1}), "A");
    EXPECT_EQ(wholeGrid(*op.Execute("[A] * 1e30")).values[0], kNoData);
}

TEST_F(MapAlgebra, InputsAreSampledAtTheCellCentres) {
    environment({0, 0, 3, 2}, 0.5);
    op.BindRaster(raster(cells, {1, 2, 3, 4, 5, 6}), "A");
    EXPECT_THAT(
        wholeGrid(*op.Execute("[A] * 1")).values,
        ElementsAre(1, 1, 2, 2, 3, 3, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 4, 4, 5, 5, 6, 6));
    environment({-1, 0, 1, 2}, 1);  // half outside
    EXPECT_THAT(wholeGrid(*op.Execute("[A] * 1")).values, ElementsAre(kNoData, 1, kNoData, 4));
}

TEST_F(MapAlgebra, ACentreOnABorderTakesTheRightAndLowerCell) {
    environment({0, 0, 2, 2}, 2);  // its one centre is (1, 1), a corner of four cells
    op.BindRaster(raster(cells, {1, 2, 3, 4, 5, 6}), "A");
    EXPECT_THAT(wholeGrid(*op.Execute("[A] * 1")).values, ElementsAre(5));
}

TEST_F(MapAlgebra, InputsInAnotherSystemAreTransformed) {
    const std::string utm = systems.createProjected(26912);
    // One cell of a degree each way, west and east of 111 W; UTM 12 has its middle at 500 km.
    op.BindRaster(raster({2, 1, -112, 41, 1, systems.createGeographic(4269)}, {7, 9}), "LL");
    environment({450000, 4480000, 550000, 4490000}, 10000, utm);
    const auto values = wholeGrid(*op.Execute("[LL] * 1")).values;
    EXPECT_EQ(values.front(), 7);
    EXPECT_EQ(values.back(), 9);
    EXPECT_THAT(values, ElementsAre(7, 7, 7, 7, 7, 9, 9, 9, 9, 9));
}

TEST_F(MapAlgebra, UnboundNamesAreTold) {
    environment({0, 0, 3, 2}, 1);
    op.BindRaster(raster(cells, {1, 2, 3, 4, 5, 6}), "A");
    op.UnbindRaster("a");
    EXPECT_THAT([&] { op.Execute("[A] * 2"); },
                ThrowsMessage<PlatformError>(HasSubstr("no raster is bound to [A]")));
}

}  // namespace
}  // namespace velmora::platform
