// SPDX-License-Identifier: MIT
#include "refet/cell_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "refet/cell_transfer.h"
#include "tests/support/serial_loop.h"

namespace velmora {
namespace {

struct Cells : testing::Test {
    test::SerialLoop loop;
    CellTable table;
};

TEST_F(Cells, RecordsStandColumnByColumnTopRowFirst) {
    // Columns 3, rows 2; cell (x, y) holds 10 x + y.
    Grid grid({3, 2, 0, 2, 1, ""});
    for (int x = 0; x < 3; ++x) {
        for (int y = 0; y < 2; ++y) grid.at(x, y) = static_cast<float>(10 * x + y);
    }
    table.createRecords(6);
    gridIntoField(loop, MemoryRaster(grid), table, CellField::TM);
    EXPECT_THAT(table.values(CellField::TM), testing::ElementsAre(0, 1, 10, 11, 20, 21));
    const Grid back = wholeGrid(*fieldAsGrid(table, CellField::TM, grid.geometry));
    EXPECT_EQ(back.values, grid.values);
}

TEST_F(Cells, LargeGridsGoThereAndBack) {
    Grid grid({700, 45, 0, 45, 1, ""});
    for (std::size_t i = 0; i < grid.values.size(); ++i) grid.values[i] = static_cast<float>(i) / 3;
    grid.at(600, 40) = kNoData;
    table.createRecords(grid.values.size());
    gridIntoField(loop, MemoryRaster(grid), table, CellField::SR);
    EXPECT_EQ(table.values(CellField::SR)[600 * 45 + 40], static_cast<double>(kNoData));
    EXPECT_EQ(wholeGrid(*fieldAsGrid(table, CellField::SR, grid.geometry)).values, grid.values);
}

TEST_F(Cells, OtherShapesAreRefused) {
    table.createRecords(6);
    const MemoryRaster larger(Grid({4, 2, 0, 2, 1, ""}, 1));
    EXPECT_THROW(gridIntoField(loop, larger, table, CellField::TM), PlatformError);
    EXPECT_THROW(fieldAsGrid(table, CellField::RefET, {3, 2, 0, 2, 1, ""}), PlatformError);
    table.writable(CellField::RefET);
    EXPECT_THROW(fieldAsGrid(table, CellField::RefET, {4, 2, 0, 2, 1, ""}), PlatformError);
}

TEST_F(Cells, TheCursorSeesTheRecordsInOrder) {
    table.createRecords(2);
    const auto records = table.records();
    EXPECT_EQ(records->fieldCount(), 11);
    EXPECT_EQ(records->fieldName(0), "Latitude");
    EXPECT_EQ(records->fieldName(10), "RefET");
    EXPECT_TRUE(isNull(records->value("TD")));
    records->moveFirst();
    int updates = 0;
    for (; !records->eof(); records->moveNext()) {
        records->setValue("tm", 5.0 + updates++);
        records->update();
    }
    EXPECT_EQ(updates, 2);
    EXPECT_THAT(table.values(CellField::TM), testing::ElementsAre(5, 6));
    EXPECT_THROW(records->value("TM"), PlatformError);
    EXPECT_THROW(records->setValue("XX", 1.0), PlatformError);
}

TEST_F(Cells, NewRecordsForgetTheOldOnes) {
    table.createRecords(2);
    table.writable(CellField::TM)[0] = 1;
    table.createRecords(3);
    EXPECT_TRUE(table.values(CellField::TM).empty());
    EXPECT_EQ(table.rowCount(), 3U);
}

}  // namespace
}  // namespace velmora
