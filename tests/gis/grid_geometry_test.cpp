// SPDX-License-Identifier: MIT
#include "gis/grid_geometry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"

namespace velmora {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

TEST(GridGeometry, CoversAnExtentFromItsTopLeftCorner) {
    const auto g = GridGeometry::covering({100, 200, 1100, 700}, 100, "crs");
    EXPECT_EQ(g.columns, 10);
    EXPECT_EQ(g.rows, 5);
    EXPECT_EQ(g.xMin, 100);
    EXPECT_EQ(g.yMax, 700);
    EXPECT_EQ(g.crs, "crs");
    EXPECT_EQ(g.extent(), (Envelope{100, 200, 1100, 700}));
    EXPECT_EQ(g.columnCentre(0), 150);
    EXPECT_EQ(g.rowCentre(4), 250);
}

TEST(GridGeometry, CountsRoundToNearestHalvesToEven) {
    EXPECT_EQ(GridGeometry::covering({0, 0, 250, 350}, 100, "").columns, 2);
    EXPECT_EQ(GridGeometry::covering({0, 0, 250, 350}, 100, "").rows, 4);
    EXPECT_EQ(GridGeometry::covering({0, 0, 10, 10}, 1000, "").cells(), 1U);
}

TEST(GridGeometry, BordersBelongToTheRightAndLowerCell) {
    const GridGeometry g{10, 5, 100, 700, 100, ""};
    EXPECT_EQ(g.columnAt(100), 0);
    EXPECT_EQ(g.columnAt(200), 1);
    EXPECT_EQ(g.columnAt(99.999), -1);
    EXPECT_EQ(g.columnAt(1100), 10);
    EXPECT_EQ(g.columnAt(1e18), 10);
    EXPECT_EQ(g.rowAt(700), 0);
    EXPECT_EQ(g.rowAt(600), 1);
    EXPECT_EQ(g.rowAt(701), -1);
}

// Cells of twice a size on the same corner: every centre lies on a border of the smaller cells.
TEST(GridGeometry, CellSizesOfFilesCarryRounding) {
    for (const auto& [small, large] : {std::pair{92.7662, 185.5324},
                                       {9.2592592593, 18.5185185186},
                                       {830.0000000000001, 1660.0},
                                       {30.0, 60.0}}) {
        for (const double corner : {0.0, 412345.678, -1234567.89}) {
            const GridGeometry fine{400, 400, corner, -corner, small, ""};
            const GridGeometry coarse{200, 200, corner, -corner, large, ""};
            for (int i = 0; i < 200; ++i) {
                ASSERT_EQ(fine.columnAt(coarse.columnCentre(i)), 2 * i + 1)
                    << small << " " << corner;
                ASSERT_EQ(fine.rowAt(coarse.rowCentre(i)), 2 * i + 1) << small << " " << corner;
            }
        }
    }
}

TEST(GridGeometry, AMillionthOfACellBeforeABorderIsOnIt) {
    const GridGeometry g{10, 5, 0, 500, 100, ""};
    EXPECT_EQ(g.columnAt(300 - 0.9e-4), 3);
    EXPECT_EQ(g.columnAt(300 - 1.1e-4), 2);
    EXPECT_EQ(g.columnAt(300 + 1e-9), 3);
    EXPECT_EQ(g.rowAt(200 + 0.9e-4), 3);
    EXPECT_EQ(g.rowAt(200 + 1.1e-4), 2);
    // The outer borders too.
    EXPECT_EQ(g.columnAt(-0.9e-4), 0);
    EXPECT_EQ(g.columnAt(-1.1e-4), -1);
    EXPECT_EQ(g.columnAt(1000 - 0.9e-4), 10);
    EXPECT_EQ(g.columnAt(1000 - 1.1e-4), 9);
    EXPECT_EQ(g.rowAt(500 + 0.9e-4), 0);
    EXPECT_EQ(g.rowAt(0.9e-4), 5);
}

TEST(GridGeometry, RefusesWhatMakesNoGrid) {
    const Envelope extent{0, 0, 300000, 250000};
    EXPECT_THROW(GridGeometry::covering(extent, 0, ""), PlatformError);
    EXPECT_THROW(GridGeometry::covering(extent, -5, ""), PlatformError);
    EXPECT_THROW(GridGeometry::covering({1, 1, 1, 5}, 1, ""), PlatformError);
    EXPECT_THROW(GridGeometry::covering({0, 0, 1e12, 1e-3}, 1, ""), PlatformError);
    EXPECT_THAT([&] { GridGeometry::covering(extent, 0.01, ""); },
                ThrowsMessage<PlatformError>(HasSubstr("give a cell size of at least 8.67 m")));
}

}  // namespace
}  // namespace velmora
