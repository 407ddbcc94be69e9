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

TEST_F(MinimumOfInputs, ALatticeInFeetIsNotTaken) {
    const std::string utm = systems.createProjected(26912);
    const std::string feet = systems.createProjected(3566);  // Utah Central, US survey feet
    const GridGeometry metres{20, 20, 420000, 4500000, 190, utm};
    // Cells of 60 m, which count 197 feet, and of 30 m, which count 98: neither is compared with
    // 190.
    const Point corner = systems.project({{419000, 4501500}}, utm, feet)[0];
    for (const double metresWide : {60.0, 30.0}) {
        const double size = metresWide / 0.3048006096012192;
        const int count = static_cast<int>(8000 / metresWide);
        const GridGeometry cellsInFeet{count, count, corner.x, corner.y, size, feet};
        EXPECT_EQ(cells({metres, cellsInFeet}), metres);
        EXPECT_EQ(cells({cellsInFeet, metres}), metres);
    }
}

TEST_F(MinimumOfInputs, ARasterInFeetIsSampledOnTheLatticeInMetres) {
    const std::string utm = systems.createProjected(26912);
    const std::string feet = systems.createProjected(3566);
    const GridGeometry metres{20, 20, 420000, 4500000, 190, utm};
    const Point corner = systems.project({{419000, 4501500}}, utm, feet)[0];
    Grid kc({200, 200, corner.x, corner.y, 131, feet});
    for (int r = 0; r < 200; ++r) {
        for (int c = 0; c < 200; ++c) kc.at(c, r) = static_cast<float>(1000 * r + c);
    }
    MapAlgebraOp op(systems);
    useInputs(op.environment());
    op.BindRaster(std::make_shared<MemoryRaster>(Grid(metres, 2)), "ETR");
    op.BindRaster(std::make_shared<MemoryRaster>(kc), "Kc");
    const Grid result = wholeGrid(*op.Execute("[Kc] * [ETR]"));
    ASSERT_EQ(result.geometry, metres);
    for (int r = 0; r < 20; r += 3) {
        for (int c = 0; c < 20; c += 3) {
            const Point p =
                systems.project({{metres.columnCentre(c), metres.rowCentre(r)}}, utm, feet)[0];
            EXPECT_EQ(result.at(c, r),
                      2 * kc.at(kc.geometry.columnAt(p.x), kc.geometry.rowAt(p.y)));
        }
    }
}

TEST_F(MinimumOfInputs, WithoutALatticeInMetresTheInputsAreNamed) {
    const std::string feet = systems.createProjected(3566);
    const std::string degrees = systems.createGeographic(4269);
    const GridGeometry a{20, 20, 1500000, 7000000, 98.4, feet};
    const GridGeometry b{20, 20, -112, 41, 0.01, degrees};
    EXPECT_THAT(
        [&] {
            cells({a, a});
        },
        ThrowsMessage<PlatformError>(testing::AllOf(
            HasSubstr("[R0] is in units of 0.30480060960121924 m (NAD83 / Utah Central"),
            HasSubstr("[R1] is in units"), HasSubstr("project one to a system in metres"))));
    EXPECT_THAT([&] { cells({b}); }, ThrowsMessage<PlatformError>(HasSubstr("[R0] is in degrees")));
}

TEST_F(MinimumOfInputs, ALatticeWithoutASystemIsInThatOfTheOthersInMetres) {
    const std::string utm = systems.createProjected(26912);
    const std::string feet = systems.createProjected(3566);
    const GridGeometry fine{60, 60, 420000, 4500000, 50, ""};
    const GridGeometry coarse{20, 20, 420000, 4500000, 190, utm};
    const Point corner = systems.project({{419000, 4501500}}, utm, feet)[0];
    const GridGeometry inFeet{200, 200, corner.x, corner.y, 131, feet};
    GridGeometry expected = fine;
    EXPECT_EQ(cells({fine, coarse}), expected);
    expected.crs = utm;
    EXPECT_EQ(cells({fine, coarse, inFeet}), expected);
    EXPECT_THAT(
        [&] {
            cells({fine, inFeet});
        },
        ThrowsMessage<PlatformError>(
            testing::AllOf(HasSubstr("[R1] is in units of 0.30480060960121924 m"),
                           HasSubstr("no input in metres has a coordinate system"))));
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
