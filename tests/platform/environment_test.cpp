// SPDX-License-Identifier: MIT
// Results on the minimum of the inputs.
#include "platform/analysis/environment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "platform/analysis/map_algebra.h"
#include "platform/features/spatial_reference.h"

namespace velmora::platform {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

struct MinimumOfInputs : testing::Test {
    SpatialReferenceFactory systems;
    AnalysisEnvironment environment;
    MinimumOfInputs() { useInputs(environment); }
    GridGeometry cells(const std::vector<GridGeometry>& inputs) {
        std::vector<AnalysisEnvironment::Input> named;
        for (const GridGeometry& g : inputs)
            named.push_back({"R" + std::to_string(named.size()), g});
        return environment.geometryOf(named, systems);
    }
};

TEST_F(MinimumOfInputs, SameCellsInSameCellsOut) {
    const GridGeometry g{7, 5, 412345.678, 4567890.123, 30.5, ""};
    EXPECT_EQ(cells({g, g}), g);
    EXPECT_EQ(cells({g}), g);
}

TEST_F(MinimumOfInputs, TheFinestLatticeCutToTheCommonExtent) {
    const GridGeometry coarse{4, 4, 100, 500, 100, ""};  // x 100..500, y 100..500
    const GridGeometry fine{60, 60, 15, 605, 10, ""};    // x 15..615, y 5..605
    // Centres of the fine lattice lie at 20, 30, ...: those from 100 up to, but not at, 500; in y
    // they lie at 600, 590, ...: those from 500 down to, but not at, 100.
    const GridGeometry common = cells({coarse, fine});
    EXPECT_EQ(common, (GridGeometry{40, 40, 95, 505, 10, ""}));
    EXPECT_EQ(cells({fine, coarse}), common);
}

TEST_F(MinimumOfInputs, TheFirstBoundWinsATie) {
    const GridGeometry a{10, 10, 0, 100, 10, ""};
    const GridGeometry b{10, 10, 6, 103, 10, ""};
    EXPECT_EQ(cells({a, b}), (GridGeometry{9, 10, 10, 100, 10, ""}));
    EXPECT_EQ(cells({b, a}), (GridGeometry{9, 10, 6, 103, 10, ""}));
}

TEST_F(MinimumOfInputs, InputsThatLieApartAreNamed) {
    const GridGeometry a{10, 10, 0, 100, 10, ""};
    const GridGeometry b{10, 10, 500, 100, 10, ""};
    EXPECT_THAT(
        [&] {
            cells({a, b});
        },
        ThrowsMessage<PlatformError>(
            testing::AllOf(HasSubstr("[R0] 0 to 100"), HasSubstr("[R1] 500 to 600"))));
    EXPECT_THROW(cells({}), PlatformError);
}

TEST_F(MinimumOfInputs, AnInputInAnotherSystemCoversWhatItsImageCovers) {
    const std::string utm = systems.createProjected(26912);
    const std::string geographic = systems.createGeographic(4269);
    const GridGeometry fine{100, 100, 400000, 4500000, 100, utm};
    // The second input covers the eastern half of the first and more, in degrees; that its cells
    // count less degrees than the others metres does not make them the finest.
    const auto edge = systems.project({{405000, 4500000}, {405000, 4490000}}, utm, geographic);
    const double west = std::max(edge[0].x, edge[1].x);
    const GridGeometry degrees{50, 20, west, 40.7, 0.01, geographic};
    const GridGeometry common = cells({fine, degrees});
    EXPECT_EQ(common.cellSize, 100);
    EXPECT_EQ(common.crs, utm);
    EXPECT_NEAR(common.xMin, 405000, 300);
    EXPECT_NEAR(common.extent().xMax, 410000, 1e-6);
}

TEST_F(MinimumOfInputs, OnlyRastersThatTheExpressionNamesCount) {
    MapAlgebraOp op(systems);
    useInputs(op.environment());
    const GridGeometry a{4, 4, 0, 40, 10, ""};
    op.BindRaster(std::make_shared<MemoryRaster>(Grid(a, 3)), "A");
    op.BindRaster(std::make_shared<MemoryRaster>(Grid({2, 2, 0, 40, 1, ""}, 5)), "Unused");
    const RasterPtr result = op.Execute("[A] * [A]");
    EXPECT_EQ(result->geometry(), a);
    EXPECT_EQ(wholeGrid(*result).values, std::vector<float>(16, 9));
    EXPECT_THROW(op.Execute("1 + 1"), PlatformError);
}

TEST_F(MinimumOfInputs, MixedSettingsAreRefused) {
    environment.SetCellSize(EnvironmentSetting::explicitValue, 10);
    EXPECT_THROW(cells({{4, 4, 0, 40, 10, ""}}), PlatformError);
}

}  // namespace
}  // namespace velmora::platform
