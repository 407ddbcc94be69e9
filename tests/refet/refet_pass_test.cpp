// SPDX-License-Identifier: MIT
#include "refet/refet_pass.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "gis/errors.h"
#include "gis/grid.h"
#include "refet/cls_models.h"
#include "refet/equations/failure.h"

namespace velmora {
namespace {

constexpr double kNone = static_cast<double>(kNoData);

// A table of 5 grid rows and 7 columns with weather that changes from record to record.
struct RefEtPass : testing::Test {
    static constexpr std::size_t kRows = 5;
    static constexpr std::size_t kRecords = 35;
    CellTable table;

    RefEtPass() {
        table.createRecords({0, 0, 7, 5});
        fill(CellField::Latitude, 41, 0);
        for (std::size_t k = 0; k < kRecords; ++k) {
            table.writable(CellField::Latitude)[k] = 41 + 0.3 * static_cast<double>(k % kRows);
        }
        fill(CellField::Elevation, 1200, 13);
        fill(CellField::TM, 20, 0.31);
        fill(CellField::TN, 4, 0.17);
        fill(CellField::TD, 1, 0.13);
        fill(CellField::SR, 14, 0.21);
        fill(CellField::WS, 1, 0.07);
        fill(CellField::GG, -0.5, 0.03);
    }
    void fill(CellField field, double first, double step) {
        const auto values = table.writable(field);
        for (std::size_t k = 0; k < values.size(); ++k) {
            values[k] = first + step * static_cast<double>(k);
        }
    }
    double at(CellField field, std::size_t k) const { return table.values(field)[k]; }
    void setLatitude(double latitude) {
        std::ranges::fill(table.writable(CellField::Latitude), latitude);
    }
};

double literal(const RefEtPass& t, RefEtMethod method, const Date& d, std::size_t k) {
    using enum CellField;
    const clsModels models(nullptr);
    const auto v = [&](CellField f) { return t.at(f, k); };
    switch (method) {
        case RefEtMethod::hargreaves:
            return models.Hargreaves1985(v(TM), v(TN), v(Latitude), d.day, d.month, d.year);
        case RefEtMethod::blaneyCriddle:
            return models.SCS_Blaney_Criddle(v(TM), v(TN), v(Latitude), d.month, d.year);
        case RefEtMethod::priestleyTaylor:
            return models.Taylor(true, 0, v(TM), v(TN), v(TD), 999, 999, v(SR), v(WS), v(GG),
                                 v(Elevation), v(Latitude), d.day, d.month, d.year);
        default:
            return models.AscePM(true, method == RefEtMethod::asceTall ? 0 : 1, v(TM), v(TN), v(TD),
                                 999, 999, v(SR), v(WS), v(GG), v(Elevation), v(Latitude), d.day,
                                 d.month, d.year);
    }
}

TEST_F(RefEtPass, GivesTheBitsOfTheLiteralEquations) {
    for (int number = 1; number <= 6; ++number) {
        const auto method = static_cast<RefEtMethod>(number);
        for (const Date& date : {Date{16, 7, 2006}, Date{14, 2, 2004}, Date{16, 12, 2001}}) {
            calculateRefEt(table, elevationParts(table), method, date, kNone);
            for (std::size_t k = 0; k < kRecords; ++k) {
                EXPECT_EQ(at(CellField::RefET, k), literal(*this, method, date, k)) << number;
            }
        }
    }
}

TEST_F(RefEtPass, MethodThreeIsMethodTwo) {
    calculateRefEt(table, elevationParts(table), RefEtMethod::asceShort, {16, 7, 2006}, kNone);
    const auto two = table.values(CellField::RefET);
    const std::vector<double> before(two.begin(), two.end());
    calculateRefEt(table, elevationParts(table), RefEtMethod::fao56, {16, 7, 2006}, kNone);
    EXPECT_THAT(table.values(CellField::RefET), testing::ElementsAreArray(before));
}

TEST_F(RefEtPass, NoDataGoesThrough) {
    table.writable(CellField::Elevation)[3] = kNone;
    table.writable(CellField::WS)[8] = kNone;
    calculateRefEt(table, elevationParts(table), RefEtMethod::asceShort, {16, 7, 2006}, kNone);
    EXPECT_EQ(at(CellField::RefET, 3), kNone);
    EXPECT_EQ(at(CellField::RefET, 8), kNone);
    EXPECT_GT(at(CellField::RefET, 9), 0);
    for (const auto method : {RefEtMethod::hargreaves, RefEtMethod::blaneyCriddle}) {
        calculateRefEt(table, elevationParts(table), method, {16, 7, 2006}, kNone);
        EXPECT_EQ(at(CellField::RefET, 3), kNone);
        EXPECT_GT(at(CellField::RefET, 8), 0);  // wind plays no part
    }
}

TEST_F(RefEtPass, NoDataInAnInputOfTheMethodGoesThrough) {
    using enum CellField;
    const std::vector<CellField> temperatures = {Elevation, TM, TN};
    const std::vector<CellField> energy = {Elevation, TM, TN, TD, SR, GG};
    const std::vector<CellField> all = {Elevation, TM, TN, TD, SR, GG, WS};
    const std::vector<std::pair<RefEtMethod, std::vector<CellField>>> inputs = {
        {RefEtMethod::asceTall, all},
        {RefEtMethod::asceShort, all},
        {RefEtMethod::fao56, all},
        {RefEtMethod::hargreaves, temperatures},
        {RefEtMethod::blaneyCriddle, temperatures},
        {RefEtMethod::priestleyTaylor, energy}};
    const auto resultWithout = [&](RefEtMethod method, CellField field) {
        const double before = at(field, 8);
        table.writable(field)[8] = kNone;
        calculateRefEt(table, elevationParts(table), method, {16, 7, 2006}, kNone);
        table.writable(field)[8] = before;
        return at(RefET, 8);
    };
    for (const auto& [method, needed] : inputs) {
        for (const CellField field : all) {
            const bool counts = std::ranges::find(needed, field) != needed.end();
            EXPECT_EQ(resultWithout(method, field) == kNone, counts)
                << static_cast<int>(method) << " " << cellFieldName(field);
        }
    }
}

TEST_F(RefEtPass, AFailureNamesTheFirstCell) {
    table.writable(CellField::TD)[17] = -237.3;
    table.writable(CellField::TD)[22] = -237.3;
    EXPECT_THAT(
        [&] {
            calculateRefEt(table, elevationParts(table), RefEtMethod::asceTall, {16, 7, 2006},
                           kNone);
        },
        testing::ThrowsMessage<EquationError>(testing::HasSubstr("grid column 4, row 3")));
    try {
        calculateRefEt(table, elevationParts(table), RefEtMethod::asceTall, {16, 7, 2006}, kNone);
    } catch (const EquationError& e) {
        EXPECT_EQ(e.place(), (ErrorPlace{.month = 7, .column = 4, .row = 3}));
    }
}

// A block tells the places of the grid, not its own.
TEST_F(RefEtPass, AFailureInABlockNamesTheCellOfTheGrid) {
    CellTable block({100, 32, 7, 5});
    for (int f = 0; f < kCellFields; ++f) {
        const auto from = table.values(static_cast<CellField>(f));
        if (!from.empty()) {
            std::ranges::copy(from, block.writable(static_cast<CellField>(f)).begin());
        }
    }
    block.writable(CellField::TD)[17] = -237.3;
    try {
        calculateRefEt(block, elevationParts(block), RefEtMethod::asceTall, {16, 7, 2006}, kNone);
        ADD_FAILURE();
    } catch (const EquationError& e) {
        EXPECT_EQ(e.place(), (ErrorPlace{.month = 7, .column = 104, .row = 35}));
    }
    // All other cells have their value.
    EXPECT_EQ(block.values(CellField::RefET)[17], kNone);
    EXPECT_GT(block.values(CellField::RefET)[34], 0);
}

TEST_F(RefEtPass, PolarNightFailsAllButBlaneyCriddle) {
    setLatitude(85);
    EXPECT_THROW(calculateRefEt(table, elevationParts(table), RefEtMethod::hargreaves,
                                {16, 12, 2006}, kNone),
                 EquationError);
    // Below the minimum the result is 0, whatever the sun.
    std::ranges::fill(table.writable(CellField::TM), -30.0);
    calculateRefEt(table, {}, RefEtMethod::hargreaves, {16, 12, 2006}, kNone);
    EXPECT_EQ(at(CellField::RefET, 0), 0);
    const auto result = calculateRefEt(table, elevationParts(table), RefEtMethod::blaneyCriddle,
                                       {16, 12, 2006}, kNone);
    EXPECT_EQ(result.failedCells, kRecords);
    EXPECT_EQ(at(CellField::RefET, 0), 0);
}

TEST_F(RefEtPass, AFieldThatWasNeverFilledIsNamed) {
    CellTable empty;
    empty.createRecords({0, 0, 7, 5});
    EXPECT_THAT(
        [&] {
            calculateRefEt(empty, {}, RefEtMethod::asceShort, {16, 7, 2006}, kNone);
        },
        testing::ThrowsMessage<PlatformError>(testing::HasSubstr("field Latitude")));
}

TEST_F(RefEtPass, AnElevationWithoutAirFailsItsCell) {
    table.writable(CellField::Elevation)[12] = 60000;
    EXPECT_THAT(
        [&] {
            calculateRefEt(table, elevationParts(table), RefEtMethod::asceTall, {16, 7, 2006},
                           kNone);
        },
        testing::ThrowsMessage<EquationError>(testing::HasSubstr("grid column 3, row 3")));
    EXPECT_THROW(calculateRefEt(table, {}, RefEtMethod::asceTall, {16, 7, 2006}, kNone),
                 PlatformError);
}

TEST_F(RefEtPass, EstimatesStandInForMissingInputs) {
    table.writable(CellField::TN)[4] = kNone;
    table.writable(CellField::TN)[6] = 60;  // above the maximum: a difference of 0
    estimateDewPoint(table, 2.5, kNone);
    EXPECT_EQ(at(CellField::TD, 1), at(CellField::TN, 1) - 2.5);
    EXPECT_EQ(at(CellField::TD, 4), kNone);
    const Date date{16, 7, 2006};
    estimateSolarRadiation(table, 0.17, date, kNone);
    const double Ra = 41.3;  // about, at 41 degrees in the middle of July
    EXPECT_NEAR(at(CellField::SA, 0), Ra, 1.2);
    EXPECT_DOUBLE_EQ(at(CellField::SR, 0), 0.17 * std::sqrt(16) * at(CellField::SA, 0));
    EXPECT_EQ(at(CellField::SR, 4), kNone);
    EXPECT_EQ(at(CellField::SR, 6), 0);
    estimateWindSpeed(table, 2.2);
    EXPECT_EQ(at(CellField::WS, 34), 2.2);
}

}  // namespace
}  // namespace velmora
