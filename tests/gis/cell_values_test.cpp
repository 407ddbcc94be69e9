// SPDX-License-Identifier: MIT
#include "gis/cell_values.h"

#include <gtest/gtest.h>

#include "gis/memory_raster.h"
#include "tests/support/fake_spatial_references.h"

namespace velmora {
namespace {

TEST(CellValues, ThePointsCellOrNothing) {
    test::FakeSpatialReferences systems;
    Grid grid({3, 2, 100, 20, 10, ""}, 7);
    grid.at(1, 0) = 8;
    grid.at(2, 1) = kNoData;
    const auto values = cellValuesAt(MemoryRaster(grid),
                                     {{105, 15},    // within
                                      {110, 20},    // on the left and upper border of the next
                                      {125, 5},     // no data
                                      {130, 15},    // on the right edge: outside
                                      {99.9, 5},    // left of it
                                      {105, 20.1},  // above
                                      {100, 10}},   // lower cell of the border
                                     "", systems);
    ASSERT_EQ(values.size(), 7U);
    EXPECT_EQ(values[0], 7);
    EXPECT_EQ(values[1], 8);
    for (const std::size_t i : {2U, 3U, 4U, 5U}) EXPECT_FALSE(values[i]) << i;
    EXPECT_EQ(values[6], 7);
}

}  // namespace
}  // namespace velmora
