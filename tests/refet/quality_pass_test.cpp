// SPDX-License-Identifier: MIT
#include "refet/quality_pass.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "gis/grid.h"

namespace velmora {
namespace {

constexpr double kNone = static_cast<double>(kNoData);

// 4 grid rows and 3 columns of cells that nothing is to be said of.
struct CellFlags : testing::Test {
    static constexpr std::size_t kRows = 4;
    static constexpr std::size_t kRecords = 12;
    CellTable table;
    std::vector<std::optional<double>> radiation = {40, 40, 40, 40};
    std::optional<Range> wind = Range{1, 4};
    bool fullWeather = true;
    std::vector<double> bits = std::vector<double>(kRecords);

    CellFlags() {
        table.createRecords({0, 0, 3, 4});
        using enum CellField;
        for (const auto& [field, value] : {std::pair{Elevation, 1200.0},
                                           {TM, 20.0},
                                           {TN, 4.0},
                                           {TD, 2.0},
                                           {SR, 20.0},
                                           {WS, 2.0},
                                           {RefET, 3.0}}) {
            std::ranges::fill(table.writable(field), value);
        }
    }
    void set(CellField field, std::size_t record, double value) {
        table.writable(field)[record] = value;
    }
    // The flag alone has two records, and is worst at record 7: column 1, row 3.
    void expectFlag(QualityFlag flag, double worst) {
        MonthQuality month(kNone, fullWeather, wind);
        month.look(table, radiation);
        for (std::size_t f = 0; f < kQualityFlags; ++f) {
            const auto other = static_cast<QualityFlag>(f);
            EXPECT_EQ(month.tally(other).cells, other == flag ? 2U : 0U) << textOf(other).text;
        }
        EXPECT_DOUBLE_EQ(month.tally(flag).worst, worst);
        expectWorst(month.tally(flag), 1, 3);
        EXPECT_EQ(month.cells(), kRecords);
        month.mark(table, radiation, bits);
        for (std::size_t k = 0; k < kRecords; ++k) {
            EXPECT_EQ(bits[k], k == 2 || k == 7 ? bitOf(flag) : 0) << k;
        }
    }
    static void expectWorst(const QualityTally& tally, int column, int row) {
        EXPECT_EQ(tally.column, column);
        EXPECT_EQ(tally.row, row);
    }
};

TEST_F(CellFlags, ReferenceEtBelow0) {
    set(CellField::RefET, 2, -0.1);
    set(CellField::RefET, 7, -0.5);
    set(CellField::RefET, 8, 0);
    expectFlag(QualityFlag::negativeEt, 0.5);
}

TEST_F(CellFlags, DewPointAboveMean) {
    set(CellField::TD, 2, 12.5);
    set(CellField::TD, 7, 13);
    set(CellField::TD, 8, 12);
    expectFlag(QualityFlag::dewPointAboveMean, 1);
}

TEST_F(CellFlags, DewPointAboveMaximum) {
    for (const std::size_t k : {2, 7}) set(CellField::TD, k, 20.0 + 0.5 * static_cast<double>(k));
    MonthQuality month(kNone, true, wind);
    month.look(table, radiation);
    EXPECT_EQ(month.tally(QualityFlag::dewPointAboveMaximum).cells, 2U);
    expectWorst(month.tally(QualityFlag::dewPointAboveMaximum), 1, 3);
    EXPECT_DOUBLE_EQ(month.tally(QualityFlag::dewPointAboveMaximum).worst, 3.5);
    EXPECT_EQ(month.tally(QualityFlag::dewPointAboveMean).cells, 2U);
}

TEST_F(CellFlags, MaximumBelowMinimum) {
    set(CellField::TN, 2, 21);
    set(CellField::TN, 7, 24);
    set(CellField::TN, 8, 20);
    expectFlag(QualityFlag::maximumBelowMinimum, 4);
}

TEST_F(CellFlags, RadiationAboveExtraterrestrial) {
    set(CellField::SR, 2, 41);
    set(CellField::SR, 7, 42);
    set(CellField::SR, 8, 40);
    expectFlag(QualityFlag::radiationAboveExtraterrestrial, 2);
}

TEST_F(CellFlags, RadiationIsComparedByRowsOfTheGrid) {
    radiation = {40, 40, 19, 19};  // rows of the records 2 and 7
    for (const std::size_t k : {3, 6, 10, 11}) set(CellField::SR, k, 18);
    set(CellField::SR, 7, 21);
    expectFlag(QualityFlag::radiationAboveExtraterrestrial, 2);
}

TEST_F(CellFlags, RadiationBelowAFifth) {
    set(CellField::SR, 2, 7.9);
    set(CellField::SR, 7, 4);
    set(CellField::SR, 8, 8.1);
    expectFlag(QualityFlag::radiationLow, -0.1);
}

TEST_F(CellFlags, RadiationIsNotComparedWhereItsBoundIsNotKnown) {
    radiation = std::vector<std::optional<double>>(kRows);
    set(CellField::SR, 2, 400);
    MonthQuality month(kNone, true, wind);
    month.look(table, radiation);
    EXPECT_EQ(month.tally(QualityFlag::radiationAboveExtraterrestrial).cells, 0U);
}

TEST_F(CellFlags, WindBeyondTheStations) {
    set(CellField::WS, 2, 0.9);
    set(CellField::WS, 7, 4.5);
    set(CellField::WS, 8, 4.0000001);  // as a grid rounds 4
    MonthQuality month(kNone, true, wind);
    month.look(table, radiation);
    EXPECT_EQ(month.tally(QualityFlag::windBeyondStations).cells, 2U);
    EXPECT_NEAR(month.tally(QualityFlag::windBeyondStations).worst, 0.5, 1e-5);
    month.mark(table, radiation, bits);
    EXPECT_EQ(bits[7], bitOf(QualityFlag::windBeyondStations));
    wind.reset();
    MonthQuality estimated(kNone, true, wind);
    estimated.look(table, radiation);
    EXPECT_EQ(estimated.tally(QualityFlag::windBeyondStations).cells, 0U);
}

TEST_F(CellFlags, TemperatureMethodsHaveTemperaturesAlone) {
    CellTable alone;
    alone.createRecords({0, 0, 3, 4});
    for (const CellField field : {CellField::TM, CellField::TN, CellField::RefET}) {
        std::ranges::copy(table.values(field), alone.writable(field).begin());
    }
    alone.writable(CellField::RefET)[5] = -1;
    MonthQuality month(kNone, false, wind);
    month.look(alone, {});
    EXPECT_EQ(month.tally(QualityFlag::negativeEt).cells, 1U);
    EXPECT_EQ(month.cells(), kRecords);
}

TEST_F(CellFlags, CellsWithoutDataCountForNothing) {
    set(CellField::RefET, 4, kNone);
    set(CellField::TD, 4, 99);
    MonthQuality month(kNone, true, wind);
    month.look(table, radiation);
    EXPECT_EQ(month.cells(), kRecords - 1);
    EXPECT_EQ(month.tally(QualityFlag::dewPointAboveMean).cells, 0U);
    month.mark(table, radiation, bits);
    EXPECT_EQ(bits[4], kNone);
}

// The blocks of a grid, in whatever order they are looked at.
TEST_F(CellFlags, TheFirstOfEquallyBadCellsOfAllBlocksIsTold) {
    set(CellField::RefET, 7, -1);
    CellTable right = table;
    CellTable below = table;
    right.createRecords({3, 0, 3, 4});
    below.createRecords({0, 4, 3, 4});
    for (CellTable* block : {&right, &below}) {
        for (int f = 0; f < kCellFields; ++f) {
            const auto field = static_cast<CellField>(f);
            const auto from = table.values(field);
            if (!from.empty()) std::ranges::copy(from, block->writable(field).begin());
        }
    }
    set(CellField::RefET, 9, -1);  // a later one of the first block
    std::vector<const CellTable*> blocks = {&table, &right, &below};
    std::ranges::sort(blocks);
    do {
        MonthQuality month(kNone, true, wind);
        for (const CellTable* block : blocks) month.look(*block, radiation);
        EXPECT_EQ(month.tally(QualityFlag::negativeEt).cells, 4U);
        EXPECT_EQ(month.cells(), 3 * kRecords);
        expectWorst(month.tally(QualityFlag::negativeEt), 1, 3);
    } while (std::ranges::next_permutation(blocks).found);
    // Column by column: one below in the same column comes before one to the right of it.
    set(CellField::RefET, 7, 3);
    set(CellField::RefET, 9, 3);
    MonthQuality month(kNone, true, wind);
    for (const CellTable* block : {&right, &below}) month.look(*block, radiation);
    expectWorst(month.tally(QualityFlag::negativeEt), 1, 7);
}

TEST_F(CellFlags, ElevationsBeyondTheStations) {
    set(CellField::Elevation, 2, 900);
    set(CellField::Elevation, 7, 2500);
    set(CellField::Elevation, 8, kNone);
    set(CellField::Elevation, 9, 2000.001);  // within the rounding of grids
    const QualityTally tally = tallyElevations(table, kNone, {1000, 2000});
    EXPECT_EQ(tally.cells, 2U);
    expectWorst(tally, 1, 3);
    EXPECT_DOUBLE_EQ(tally.worst, 500);
    bits[7] = 1;
    addElevationBits(table, kNone, {1000, 2000}, QualityFlag::elevationBeyondStations, bits);
    EXPECT_EQ(bits[2], bitOf(QualityFlag::elevationBeyondStations));
    EXPECT_EQ(bits[7], bitOf(QualityFlag::elevationBeyondStations) + 1);
    EXPECT_EQ(bits[8], 0);
    EXPECT_EQ(bits[9], 0);
}

// Against the distance of every cell from every place, over the whole grid and in blocks of it.
TEST(Distances, AreThoseOfAPlainSearch) {
    const GridGeometry geometry{53, 71, 1000, 90000, 700, {}};
    const std::vector<std::vector<Point>> layouts = {
        {{5000, 80000}}, {{-3000, 95000}, {30000, 42000}, {36000, 43000}}, {{20000, 60000}}};
    const CellBlock whole{0, 0, geometry.columns, geometry.rows};
    const std::vector<std::vector<CellBlock>> divisions = {
        {whole}, {{20, 32, 33, 39}, {0, 32, 20, 39}, {0, 0, 20, 32}, {20, 0, 33, 32}}};
    for (const auto& places : layouts) {
        for (const double limit : {900.0, 12'000.0, 27'000.0, 80'000.0}) {
            const auto farthest = [&](int column, int row) {
                double least = 1e30;
                for (const Point& p : places) {
                    least = std::min(least, std::hypot(geometry.columnCentre(column) - p.x,
                                                       geometry.rowCentre(row) - p.y));
                }
                return least;
            };
            const auto without = [](int column, int row) { return (71 * column + row) % 17 == 0; };
            QualityTally expected;
            for (int column = 0; column < geometry.columns; ++column) {
                for (int row = 0; row < geometry.rows; ++row) {
                    if (without(column, row) || farthest(column, row) <= limit) continue;
                    expected.add(farthest(column, row), whole,
                                 static_cast<std::size_t>(71 * column + row));
                }
            }
            for (const auto& blocks : divisions) {
                QualityTally found;
                for (const CellBlock& block : blocks) {
                    CellTable table(block);
                    const auto elevations = table.writable(CellField::Elevation);
                    std::vector<double> bits(block.cells());
                    std::vector<double> marks(block.cells());
                    std::size_t k = 0;
                    for (int c = block.column; c < block.column + block.columns; ++c) {
                        for (int r = block.row; r < block.row + block.rows; ++r, ++k) {
                            elevations[k] = without(c, r) ? kNone : 1000;
                            if (!without(c, r) && farthest(c, r) > limit) {
                                marks[k] = bitOf(QualityFlag::farFromStations);
                            }
                        }
                    }
                    found.merge(tallyDistances(table, kNone, geometry, places, limit, bits));
                    EXPECT_EQ(bits, marks) << limit;
                }
                EXPECT_EQ(found.cells, expected.cells) << limit;
                if (expected.cells == 0) continue;
                EXPECT_EQ(found.column, expected.column) << limit;
                EXPECT_EQ(found.row, expected.row) << limit;
                EXPECT_NEAR(found.worst, expected.worst, 1e-6);
            }
        }
    }
}

}  // namespace
}  // namespace velmora
