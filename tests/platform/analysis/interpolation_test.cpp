// SPDX-License-Identifier: MIT
#include "platform/analysis/interpolation.h"

#include <gtest/gtest.h>

#include "gis/errors.h"
#include "gis/memory_raster.h"

namespace velmora::platform {
namespace {

struct Interpolation : testing::Test {
    Grid idw(const std::vector<Sample>& samples, const GridGeometry& g) {
        op.environment().SetCellSize(EnvironmentSetting::explicitValue, g.cellSize);
        op.environment().SetExtent(EnvironmentSetting::explicitValue, g.extent(), g.crs);
        return wholeGrid(*op.IDW(samples, 2, 12));
    }
    InterpolationOp op;
};

TEST_F(Interpolation, StationsOfOnePlaceCountOnceWithTheirMean) {
    const GridGeometry g{4, 4, 0, 8, 2, ""};
    const Grid grid = idw({{{1, 1}, 10}, {{5, 5}, 4}, {{1, 1}, 20}}, g);
    EXPECT_EQ(grid.values, idw({{{1, 1}, 15}, {{5, 5}, 4}}, g).values);
    EXPECT_EQ(grid.at(0, 3), 15.0F);
    EXPECT_EQ(grid.at(2, 1), 4.0F);
}

TEST_F(Interpolation, NoStationsIsAnError) {
    EXPECT_THROW(idw({}, {1, 1, 0, 1, 1, ""}), PlatformError);
}

}  // namespace
}  // namespace velmora::platform
