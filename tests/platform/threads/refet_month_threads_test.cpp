// SPDX-License-Identifier: MIT
// A month's cells, made and computed block by block on many threads.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "gis/grid_tiles.h"
#include "gis/memory_raster.h"
#include "platform/threads/parallel_loop.h"
#include "refet/cell_rows.h"
#include "refet/equations/failure.h"
#include "refet/refet_month.h"
#include "tests/support/serial_loop.h"

namespace velmora {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

constexpr double kNone = static_cast<double>(kNoData);

// A grid of several tiles with weather that changes from cell to cell.
struct Month : testing::Test {
    GridGeometry geometry{600, 50, 0, 50, 1, ""};
    RunSettings settings;
    CellInputs inputs;
    std::unique_ptr<CellMaker> maker;
    MonthQuality quality{kNone, true, std::nullopt};
    platform::ParallelLoop many;

    Month() {
        settings.RefETMethod = "1";
        inputs.date = {16, 7, 2006};
        using enum CellField;
        setGrid(Elevation, 1200, 13);
        setGrid(TM, 20, 0.11F);
        setGrid(TN, 4, 0.07F);
        setGrid(TD, 1, 0.03F);
        setGrid(SR, 14, 0.09F);
        setGrid(WS, 1, 0.02F);
        setGrid(GG, -0.5F, 0.003F);
        std::vector<double> latitudes;
        for (int row = 0; row < geometry.rows; ++row) latitudes.push_back(41 + 0.003 * row);
        maker = std::make_unique<CellMaker>(settings, latitudes, kNone);
    }
    void setGrid(CellField field, float first, float step) {
        Grid grid(geometry);
        for (std::size_t k = 0; k < grid.values.size(); ++k) {
            grid.values[k] = first + step * static_cast<float>(k % 97);
        }
        put(field, grid);
    }
    void put(CellField field, const Grid& grid) {
        inputs[field] = {FieldSource::Kind::grid, std::make_shared<MemoryRaster>(grid)};
    }
    Grid gridOf(CellField field) const { return wholeGrid(*inputs[field].grid); }
    void breakDewPoint(const std::vector<std::pair<int, int>>& cells) {
        Grid dewPoint = gridOf(CellField::TD);
        for (const auto& [column, row] : cells) dewPoint.at(column, row) = -237.3F;
        put(CellField::TD, dewPoint);
    }
};

TEST_F(Month, IsTheSameInBlocksAndWhole) {
    const RefEtMonth month(*maker, inputs, geometry, quality);
    const Grid whole = wholeGrid(month);
    Grid tiled(geometry);
    forEachTile(many, geometry, [&](const CellBlock& block) {
        std::vector<float> values(block.cells());
        month.read(block, values);
        for (int r = 0; r < block.rows; ++r) {
            for (int c = 0; c < block.columns; ++c) {
                tiled.at(block.column + c, block.row + r) =
                    values[static_cast<std::size_t>(r * block.columns + c)];
            }
        }
    });
    EXPECT_EQ(tiled.values, whole.values);
    EXPECT_EQ(quality.cells(), 2 * geometry.cells());
    // The latitude is that of the cell's own row, the weather that of the cell.
    CellTable one;
    maker->make(one, {517, 43, 1, 1}, inputs);
    maker->calculate(one, inputs.date);
    EXPECT_EQ(static_cast<float>(one.values(CellField::RefET)[0]), whole.at(517, 43));
    EXPECT_EQ(one.values(CellField::Latitude)[0], 41 + 0.003 * 43);
    EXPECT_EQ(one.values(CellField::TM)[0], static_cast<double>(gridOf(CellField::TM).at(517, 43)));
}

TEST_F(Month, TheFirstFailureInTheOrderOfTheRecordsIsTold) {
    breakDewPoint({{24, 40}, {300, 2}, {24, 3}, {599, 0}});
    const RefEtMonth month(*maker, inputs, geometry, quality);
    EXPECT_THROW(wholeGrid(month), CalculationFailed);
    for (int i = 0; i < 20; ++i) {
        EXPECT_THAT([&] { month.throwFirstFailure(many); },
                    ThrowsMessage<EquationError>(HasSubstr("grid column 25, row 4")));
    }
    EXPECT_NO_THROW(RefEtMonth(*maker, CellInputs(inputs), geometry, quality));
}

TEST_F(Month, AGridThatCannotBeReadIsNamedByItsField) {
    class Damaged : public MemoryRaster {
      public:
        using MemoryRaster::MemoryRaster;
        void read(const CellBlock& block, std::span<float> values) const override {
            if (block.column > 0) throw PlatformError("tile 2 is damaged");
            MemoryRaster::read(block, values);
        }
    };
    inputs[CellField::SR].grid = std::make_shared<Damaged>(gridOf(CellField::SR));
    const RefEtMonth month(*maker, inputs, geometry, quality);
    std::vector<float> values(256);
    EXPECT_NO_THROW(month.read({0, 0, 256, 1}, values));
    try {
        month.read({256, 0, 256, 1}, values);
        ADD_FAILURE();
    } catch (const UnreadableField& e) {
        EXPECT_EQ(e.field(), CellField::SR);
        EXPECT_STREQ(e.what(), "tile 2 is damaged");
    }
}

// The work database's rows: all records, column by column, with whatever is known of them.
TEST_F(Month, TheRecordsOfAllBlocksStandInTheirOrder) {
    inputs[CellField::TD] = {FieldSource::Kind::estimate};
    inputs[CellField::WS] = {FieldSource::Kind::withoutData};
    inputs[CellField::GG] = {};
    settings.Ko = 2.5;
    const std::optional<CellInputs> calculated;
    CellRows rows({many, *maker, geometry, inputs, calculated});
    ASSERT_EQ(rows.rowCount(), geometry.cells());
    const Grid TN = gridOf(CellField::TN);
    const auto column = [&](CellField field) { return rows.column(static_cast<int>(field)); };
    std::size_t first = 0;
    while (first < rows.rowCount()) {
        const std::size_t count = rows.next(first);
        ASSERT_GT(count, 0U);
        for (std::size_t k = 0; k < count; k += 31) {
            const int x = static_cast<int>((first + k) / 50);
            const int y = static_cast<int>((first + k) % 50);
            ASSERT_EQ(column(CellField::TN)[k], static_cast<double>(TN.at(x, y)));
            ASSERT_EQ(column(CellField::TD)[k], static_cast<double>(TN.at(x, y)) - 2.5);
            ASSERT_EQ(column(CellField::Latitude)[k], 41 + 0.003 * y);
            ASSERT_EQ(column(CellField::WS)[k], kNone);
        }
        EXPECT_TRUE(column(CellField::GG).empty());
        EXPECT_TRUE(column(CellField::RefET).empty());
        first += count;
    }
    EXPECT_EQ(first, rows.rowCount());
}

// ... and the reference ET of the month that was computed, which may have ended in a failure.
TEST_F(Month, TheRecordsHaveTheReferenceEtThatWasComputed) {
    breakDewPoint({{24, 3}});
    const std::optional<CellInputs> calculated = inputs;
    CellInputs later = inputs;
    later[CellField::TM] = {FieldSource::Kind::withoutData};
    CellRows rows({many, *maker, geometry, later, calculated});
    CellTable whole;
    maker->make(whole, {0, 0, geometry.columns, geometry.rows}, inputs);
    EXPECT_THROW(maker->calculate(whole, inputs.date), EquationError);
    const auto expected = whole.values(CellField::RefET);
    for (std::size_t first = 0; first < rows.rowCount();) {
        const std::size_t count = rows.next(first);
        const auto found = rows.column(static_cast<int>(CellField::RefET));
        ASSERT_TRUE(std::ranges::equal(found, expected.subspan(first, count)));
        ASSERT_EQ(rows.column(static_cast<int>(CellField::TM))[0], kNone);
        first += count;
    }
    EXPECT_EQ(expected[24 * 50 + 3], kNone);
}

}  // namespace
}  // namespace velmora
