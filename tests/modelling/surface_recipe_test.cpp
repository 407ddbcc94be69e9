// SPDX-License-Identifier: MIT
#include "modelling/surface_recipe.h"

#include <gtest/gtest.h>

#include "gis/grid.h"
#include "gis/memory_raster.h"
#include "platform/platform.h"

namespace velmora {
namespace {

const GridGeometry kCells = {2, 1, 0, 1, 1, {}};
constexpr double kElevation = 1500;
constexpr double kReference = 4064;
constexpr LinearTrend kTrend = {12.5, -0.0065};

// The grid that the recipe goes back to from 2 in the left cell and -30 in the right one.
Grid backOf(const SurfaceRecipe& recipe) {
    platform::Platform platform;
    const auto algebra = platform.analysis().mapAlgebra();
    useCells(algebra->environment(), kCells);
    const auto bind = [&](const std::string& name, double value) {
        algebra->BindRaster(std::make_shared<MemoryRaster>(Grid(kCells, static_cast<float>(value))),
                            name);
    };
    bind("DEM", kElevation);
    bind("Reference", kReference);
    Grid interpolated(kCells, 2);
    interpolated.at(1, 0) = -30;
    return wholeGrid(*recipe.back(*algebra, std::make_shared<MemoryRaster>(interpolated), kTrend));
}

double pointOf(const SurfaceRecipe& recipe, double interpolated) {
    return recipe.backAt(interpolated, kTrend, kElevation, kReference);
}

// What the leave-one-out says of a place is what the grid holds there.
TEST(SurfaceRecipe, BothWaysBackAgree) {
    SurfaceRecipe recipe;
    recipe.variable = "T";
    recipe.referenceRaster = "Reference";
    recipe.referenceScale = 2540;
    const auto expectAgreement = [&](double left, double right) {
        EXPECT_NEAR(pointOf(recipe, 2), left, 1e-12);
        EXPECT_NEAR(pointOf(recipe, -30), right, 1e-12);
        EXPECT_NEAR(backOf(recipe).at(0, 0), left, 1e-5);
        EXPECT_NEAR(backOf(recipe).at(1, 0), right, 1e-5);
    };
    expectAgreement(2, -30);
    recipe.treatment = Treatment::ratio;
    expectAgreement(3.2, -48);
    recipe.treatment = Treatment::detrended;
    expectAgreement(4.75, -27.25);
    recipe.notNegative = true;
    expectAgreement(4.75, 0);
}

// The diagnosis stays in the unit of the stations.
TEST(SurfaceRecipe, FahrenheitBecomesCelsiusInTheGridAlone) {
    SurfaceRecipe recipe;
    recipe.variable = "T";
    recipe.treatment = Treatment::detrended;
    recipe.fromFahrenheit = true;
    EXPECT_NEAR(pointOf(recipe, 2), 4.75, 1e-12);
    EXPECT_NEAR(backOf(recipe).at(0, 0), 5.0 / 9 * (4.75 - 32), 1e-5);
}

TEST(ValidRange, LimitsAreStrictUnlessTheLowerOneCounts) {
    const ValidRange open = {-20, 80};
    EXPECT_FALSE(open.holds(-20));
    EXPECT_TRUE(open.holds(-19.9));
    EXPECT_FALSE(open.holds(80));
    EXPECT_EQ(open.clause("w.TM_Jan"), "[w.TM_Jan] > -20 AND [w.TM_Jan] < 80");
    EXPECT_EQ(open.limits(), "above -20 and below 80");
    EXPECT_EQ(open.text(), "between -20 and 80");
    const ValidRange halfOpen = {0, 1000, true};
    EXPECT_TRUE(halfOpen.holds(0));
    EXPECT_FALSE(halfOpen.holds(1000));
    EXPECT_EQ(halfOpen.clause("s.RefPPT"), "[s.RefPPT] >= 0 AND [s.RefPPT] < 1000");
    EXPECT_EQ(halfOpen.limits(), "at least 0 and below 1000");
    EXPECT_EQ(halfOpen.text(), "0 to below 1000");
}

TEST(SurfaceRecipe, ExpressionsOfRatioAndTrend) {
    SurfaceRecipe recipe;
    recipe.referenceScale = 2540;
    EXPECT_EQ(recipe.ratioExpression("w.P_Jan", "s.RefPPT"), "2540 * [w.P_Jan] / [s.RefPPT]");
    EXPECT_EQ(retrendExpression("T", {-1.5, 0.25}), "[T] + -1.5 + 0.25 * [DEM] ");
}

}  // namespace
}  // namespace velmora
