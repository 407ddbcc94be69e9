// SPDX-License-Identifier: MIT
#include "refet/cell_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "gis/memory_raster.h"

namespace velmora {
namespace {

using testing::ElementsAre;

// Columns 4, rows 3; cell (x, y) holds 10 x + y.
Grid tens() {
    Grid grid({4, 3, 0, 3, 1, ""});
    for (int x = 0; x < 4; ++x) {
        for (int y = 0; y < 3; ++y) grid.at(x, y) = static_cast<float>(10 * x + y);
    }
    return grid;
}

TEST(Cells, RecordsStandColumnByColumnTopRowFirst) {
    CellTable table({0, 0, 4, 3});
    gridIntoField(MemoryRaster(tens()), table, CellField::TM);
    EXPECT_THAT(table.values(CellField::TM),
                ElementsAre(0, 1, 2, 10, 11, 12, 20, 21, 22, 30, 31, 32));
    std::vector<float> back(12);
    fieldIntoCells(table, CellField::TM, back);
    EXPECT_EQ(back, tens().values);
}

TEST(Cells, ABlockHasItsCellsAlone) {
    Grid grid = tens();
    grid.at(2, 1) = kNoData;
    CellTable table({1, 1, 2, 2});
    EXPECT_EQ(table.rows(), 2U);
    gridIntoField(MemoryRaster(grid), table, CellField::TM);
    EXPECT_THAT(table.values(CellField::TM), ElementsAre(11, 12, static_cast<double>(kNoData), 22));
    std::vector<float> back(4);
    fieldIntoCells(table, CellField::TM, back);
    EXPECT_THAT(back, ElementsAre(11, kNoData, 12, 22));
}

TEST(Cells, AFieldThatWasNeverWrittenIsNoGrid) {
    CellTable table({0, 0, 2, 1});
    std::vector<float> cells(2);
    EXPECT_THAT([&] { fieldIntoCells(table, CellField::SR, cells); },
                testing::ThrowsMessage<PlatformError>(testing::HasSubstr("field SR")));
}

TEST(Cells, NewRecordsForgetTheOldOnes) {
    CellTable table({0, 0, 2, 1});
    table.writable(CellField::TM)[0] = 1;
    table.createRecords({0, 0, 3, 1});
    EXPECT_TRUE(table.values(CellField::TM).empty());
    EXPECT_EQ(table.rowCount(), 3U);
    EXPECT_STREQ(cellFieldName(CellField::RefET), "RefET");
}

}  // namespace
}  // namespace velmora
