// SPDX-License-Identifier: MIT
// The cell table and the equations over it on many threads.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "gis/memory_raster.h"
#include "platform/threads/parallel_loop.h"
#include "refet/cell_transfer.h"
#include "refet/equations/failure.h"
#include "refet/refet_pass.h"
#include "tests/support/serial_loop.h"

namespace velmora {
namespace {

constexpr std::size_t kRows = 50;
constexpr std::size_t kRecords = 200 * kRows;

// 200 columns with weather that changes from record to record.
void fill(CellTable& table) {
    using enum CellField;
    table.createRecords(kRecords);
    const auto set = [&](CellField field, double first, double step) {
        const auto values = table.writable(field);
        for (std::size_t k = 0; k < kRecords; ++k) {
            values[k] = first + step * static_cast<double>(k % 97);
        }
    };
    set(Elevation, 1200, 13);
    set(TM, 20, 0.11);
    set(TN, 4, 0.07);
    set(TD, 1, 0.03);
    set(SR, 14, 0.09);
    set(WS, 1, 0.02);
    set(GG, -0.5, 0.003);
    for (std::size_t k = 0; k < kRecords; ++k) {
        table.writable(Latitude)[k] = 41 + 0.003 * static_cast<double>(k % kRows);
    }
}

void calculate(IParallelLoop& loop, CellTable& table) {
    calculateRefEt(loop, table, elevationParts(loop, table), RefEtMethod::asceTall, {16, 7, 2006},
                   kRows, static_cast<double>(kNoData));
}

TEST(RefEtPassThreads, ManyThreadsGiveTheBitsOfOne) {
    platform::ParallelLoop many;
    test::SerialLoop one;
    CellTable a;
    CellTable b;
    fill(a);
    fill(b);
    calculate(many, a);
    calculate(one, b);
    EXPECT_TRUE(std::ranges::equal(a.values(CellField::RefET), b.values(CellField::RefET)));
}

TEST(RefEtPassThreads, AFailureNamesTheFirstCellWhateverTheThreads) {
    platform::ParallelLoop many;
    CellTable table;
    fill(table);
    for (const std::size_t record : {1203U, 5000U, 9000U}) {
        table.writable(CellField::TD)[record] = -237.3;
    }
    for (int i = 0; i < 20; ++i) {
        EXPECT_THAT(
            [&] { calculate(many, table); },
            testing::ThrowsMessage<EquationError>(testing::HasSubstr("grid column 25, row 4")));
    }
}

TEST(CellsThreads, LargeGridsGoThereAndBack) {
    platform::ParallelLoop many;
    Grid grid({700, 45, 0, 45, 1, ""});
    for (std::size_t i = 0; i < grid.values.size(); ++i) grid.values[i] = static_cast<float>(i) / 3;
    CellTable table;
    table.createRecords(grid.values.size());
    gridIntoField(many, MemoryRaster(grid), table, CellField::SR);
    EXPECT_EQ(wholeGrid(*fieldAsGrid(table, CellField::SR, grid.geometry)).values, grid.values);
}

}  // namespace
}  // namespace velmora
