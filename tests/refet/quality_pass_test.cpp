// SPDX-License-Identifier: MIT
#include "refet/quality_pass.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "gis/grid.h"
#include "tests/support/serial_loop.h"

namespace velmora {
namespace {

constexpr double kNone = static_cast<double>(kNoData);

// Calls its body in small pieces, the last ones first.
class BackwardLoop : public IParallelLoop {
  public:
    void run(std::size_t count, std::size_t /*grain*/,
             const std::function<void(std::size_t, std::size_t)>& body) override {
        constexpr std::size_t kPiece = 3;
        for (std::size_t end = count; end > 0;) {
            const std::size_t begin = end > kPiece ? end - kPiece : 0;
            body(begin, end);
            end = begin;
        }
    }
};

// 4 grid rows and 3 columns of cells that nothing is to be said of.
struct CellFlags : testing::Test {
    static constexpr std::size_t kRows = 4;
    static constexpr std::size_t kRecords = 12;
    test::SerialLoop loop;
    CellTable table;
    std::vector<std::optional<double>> radiation = {40, 40, 40, 40};
    std::optional<Range> wind = Range{1, 4};
    bool fullWeather = true;
    std::vector<double> bits = std::vector<double>(kRecords);

    CellFlags() {
        table.createRecords(kRecords);
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
    // The flag alone has two records, and is worst at record 7.
    void expectFlag(QualityFlag flag, double worst) {
        MonthQuality month(table, kRows, kNone, fullWeather, wind, bits);
        month.look(6, kRecords, radiation);
        month.look(0, 6, radiation);
        for (std::size_t f = 0; f < kQualityFlags; ++f) {
            const auto other = static_cast<QualityFlag>(f);
            EXPECT_EQ(month.tally(other).cells, other == flag ? 2U : 0U) << textOf(other).text;
        }
        EXPECT_DOUBLE_EQ(month.tally(flag).worst, worst);
        EXPECT_EQ(month.tally(flag).record, 7U);
        EXPECT_EQ(month.cells(), kRecords);
        for (std::size_t k = 0; k < kRecords; ++k) {
            EXPECT_EQ(bits[k], k == 2 || k == 7 ? bitOf(flag) : 0) << k;
        }
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
    MonthQuality month(table, kRows, kNone, true, wind);
    month.look(0, kRecords, radiation);
    EXPECT_EQ(month.tally(QualityFlag::dewPointAboveMaximum).cells, 2U);
    EXPECT_EQ(month.tally(QualityFlag::dewPointAboveMaximum).record, 7U);
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
    MonthQuality month(table, kRows, kNone, true, wind);
    month.look(0, kRecords, radiation);
    EXPECT_EQ(month.tally(QualityFlag::radiationAboveExtraterrestrial).cells, 0U);
}

TEST_F(CellFlags, WindBeyondTheStations) {
    set(CellField::WS, 2, 0.9);
    set(CellField::WS, 7, 4.5);
    set(CellField::WS, 8, 4.0000001);  // as a grid rounds 4
    MonthQuality month(table, kRows, kNone, true, wind, bits);
    month.look(0, kRecords, radiation);
    EXPECT_EQ(month.tally(QualityFlag::windBeyondStations).cells, 2U);
    EXPECT_NEAR(month.tally(QualityFlag::windBeyondStations).worst, 0.5, 1e-5);
    EXPECT_EQ(bits[7], bitOf(QualityFlag::windBeyondStations));
    wind.reset();
    MonthQuality estimated(table, kRows, kNone, true, wind);
    estimated.look(0, kRecords, radiation);
    EXPECT_EQ(estimated.tally(QualityFlag::windBeyondStations).cells, 0U);
}

TEST_F(CellFlags, TemperatureMethodsHaveTemperaturesAlone) {
    CellTable alone;
    alone.createRecords(kRecords);
    for (const CellField field : {CellField::TM, CellField::TN, CellField::RefET}) {
        std::ranges::copy(table.values(field), alone.writable(field).begin());
    }
    alone.writable(CellField::RefET)[5] = -1;
    MonthQuality month(alone, kRows, kNone, false, wind);
    month.look(0, kRecords, {});
    EXPECT_EQ(month.tally(QualityFlag::negativeEt).cells, 1U);
    EXPECT_EQ(month.cells(), kRecords);
}

TEST_F(CellFlags, CellsWithoutDataCountForNothing) {
    set(CellField::RefET, 4, kNone);
    set(CellField::TD, 4, 99);
    MonthQuality month(table, kRows, kNone, true, wind, bits);
    month.look(0, kRecords, radiation);
    EXPECT_EQ(month.cells(), kRecords - 1);
    EXPECT_EQ(month.tally(QualityFlag::dewPointAboveMean).cells, 0U);
    EXPECT_EQ(bits[4], kNone);
}

TEST_F(CellFlags, TheFirstOfEquallyBadCellsIsTold) {
    for (const std::size_t k : {3, 9}) set(CellField::RefET, k, -1);
    for (const std::size_t first : {0, 6}) {
        MonthQuality month(table, kRows, kNone, true, wind);
        month.look(first, first + 6, radiation);
        month.look(6 - first, 12 - first, radiation);
        EXPECT_EQ(month.tally(QualityFlag::negativeEt).record, 3U);
    }
}

TEST_F(CellFlags, ElevationsBeyondTheStations) {
    set(CellField::Elevation, 2, 900);
    set(CellField::Elevation, 7, 2500);
    set(CellField::Elevation, 8, kNone);
    set(CellField::Elevation, 9, 2000.001);  // within the rounding of grids
    BackwardLoop backward;
    const auto z = table.values(CellField::Elevation);
    for (IParallelLoop* each :
         {static_cast<IParallelLoop*>(&loop), static_cast<IParallelLoop*>(&backward)}) {
        const QualityTally tally = tallyElevations(*each, z, kNone, {1000, 2000});
        EXPECT_EQ(tally.cells, 2U);
        EXPECT_EQ(tally.record, 7U);
        EXPECT_DOUBLE_EQ(tally.worst, 500);
    }
    bits[7] = 1;
    addElevationBits(z, kNone, {1000, 2000}, QualityFlag::elevationBeyondStations, bits);
    EXPECT_EQ(bits[2], bitOf(QualityFlag::elevationBeyondStations));
    EXPECT_EQ(bits[7], bitOf(QualityFlag::elevationBeyondStations) + 1);
    EXPECT_EQ(bits[8], 0);
    EXPECT_EQ(bits[9], 0);
}

// Against the distance of every cell from every place.
TEST(Distances, AreThoseOfAPlainSearch) {
    const GridGeometry geometry{53, 71, 1000, 90000, 700, {}};
    std::vector<double> elevations(geometry.cells(), 1000);
    for (std::size_t k = 0; k < elevations.size(); k += 17) elevations[k] = kNone;
    const std::vector<std::vector<Point>> layouts = {
        {{5000, 80000}}, {{-3000, 95000}, {30000, 42000}, {36000, 43000}}, {{20000, 60000}}};
    test::SerialLoop loop;
    BackwardLoop backward;
    for (const auto& places : layouts) {
        for (const double limit : {900.0, 12'000.0, 27'000.0, 80'000.0}) {
            QualityTally expected;
            std::vector<double> marks(elevations.size());
            for (std::size_t k = 0; k < elevations.size(); ++k) {
                double least = 1e30;
                for (const Point& p : places) {
                    least = std::min(
                        least, std::hypot(geometry.columnCentre(static_cast<int>(k) / 71) - p.x,
                                          geometry.rowCentre(static_cast<int>(k) % 71) - p.y));
                }
                if (elevations[k] == kNone || least <= limit) continue;
                expected.add(least, k);
                marks[k] = bitOf(QualityFlag::farFromStations);
            }
            for (IParallelLoop* each :
                 {static_cast<IParallelLoop*>(&loop), static_cast<IParallelLoop*>(&backward)}) {
                std::vector<double> bits(elevations.size());
                const QualityTally found =
                    tallyDistances(*each, elevations, kNone, geometry, places, limit, bits);
                EXPECT_EQ(found.cells, expected.cells) << limit;
                if (expected.cells > 0) {
                    EXPECT_EQ(found.record, expected.record) << limit;
                    EXPECT_NEAR(found.worst, expected.worst, 1e-6);
                }
                EXPECT_EQ(bits, marks) << limit;
            }
        }
    }
}

}  // namespace
}  // namespace velmora
