// SPDX-License-Identifier: MIT
#include "gis/expression.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "gis/errors.h"

namespace velmora {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

// The value of an expression whose names stand for the given numbers, in order of appearance.
double value(const std::string& text, const std::vector<double>& numbers = {}) {
    const Expression expression(text);
    std::vector<const double*> operands;
    for (const double& number : numbers) operands.push_back(&number);
    double result = 0;
    expression.evaluate(operands, 1, &result);
    return result;
}

TEST(Expression, ArithmeticBindsAsUsual) {
    EXPECT_EQ(value("1 + 2 * 3 - 4 / 2"), 5);
    EXPECT_EQ(value("(1 + 2) * 3"), 9);
    EXPECT_EQ(value("8 / 4 / 2"), 1);
    EXPECT_EQ(value("5 - 3 - 1"), 1);
    EXPECT_EQ(value(".5 * 4"), 2);
    EXPECT_EQ(value("2.5e-3 * 1E3"), 2.5);
}

TEST(Expression, MinusMayBeDoubled) {
    EXPECT_EQ(value("3--2"), 5);
    EXPECT_EQ(value("3 - - 2"), 5);
    EXPECT_EQ(value("--3"), 3);
    EXPECT_EQ(value("2*-3"), -6);
    EXPECT_DOUBLE_EQ(value("[wx.TM_Jan]--0.0065 * [stations.ELEVATION] * 0.3048 -21.5", {15, 5000}),
                     15 + 0.0065 * 5000 * 0.3048 - 21.5);
    EXPECT_DOUBLE_EQ(value("[T] + -3.5e-05 + -0.0065 * [DEM] ", {1, 100}), 1 - 3.5e-05 - 0.65);
}

TEST(Expression, NamesStandInBracketsOrAlone) {
    EXPECT_EQ(value("[a b-c] + x.y_1", {2, 3}), 5);
    EXPECT_EQ(value("[T] * [t]", {3}), 9);  // one name, whatever its case
    EXPECT_EQ(Expression("[DEM] + [T] + [DEM]").names(), (std::vector<std::string>{"DEM", "T"}));
}

TEST(Expression, ComparisonsGiveOneOrZero) {
    EXPECT_EQ(value("2 > 1"), 1);
    EXPECT_EQ(value("2 <= 1"), 0);
    EXPECT_EQ(value("2 <> 1"), 1);
    EXPECT_EQ(value("2 = 2"), 1);
    EXPECT_EQ(value("2 >= 2"), 1);
    EXPECT_EQ(value("1 != 1"), 0);
    EXPECT_EQ(value("([ET] - [PPT] > 0) * ([ET] - [PPT])", {5, 3}), 2);
    EXPECT_EQ(value("x > -20 AND x < 80", {-20}), 0);
    EXPECT_EQ(value("x > -20 and x < 80", {-19.9}), 1);
    EXPECT_EQ(value("x < 0 OR x > 10", {11}), 1);
    EXPECT_EQ(value("NOT x", {0}), 1);
}

TEST(Expression, NoDataSpreads) {
    const double nothing = std::nan("");
    EXPECT_TRUE(std::isnan(value("x + 1", {nothing})));
    EXPECT_TRUE(std::isnan(value("x * 0", {nothing})));
    EXPECT_TRUE(std::isnan(value("x > 0", {nothing})));
    EXPECT_TRUE(std::isnan(value("1 / 0")));
    EXPECT_TRUE(std::isnan(value("0 / x", {0})));
    EXPECT_EQ(value("x > 0 AND 1 > 2", {nothing}), 0);
    EXPECT_EQ(value("x > 0 OR 1 > 0", {nothing}), 1);
    EXPECT_TRUE(std::isnan(value("x > 0 AND 1 > 0", {nothing})));
}

TEST(Expression, LongInputsGoThroughInPieces) {
    const Expression expression("[a] * 2 + [b]");
    std::vector<double> a(1500);
    std::vector<double> b(1500, 0.5);
    for (std::size_t i = 0; i < a.size(); ++i) a[i] = static_cast<double>(i);
    std::vector<double> results(1500);
    const double* operands[] = {a.data(), b.data()};
    expression.evaluate(operands, results.size(), results.data());
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_EQ(results[i], 2.0 * static_cast<double>(i) + 0.5);
    }
}

TEST(Expression, MistakesNameTheirPosition) {
    EXPECT_THAT([] { Expression("1 + "); }, ThrowsMessage<PlatformError>(HasSubstr("position 5")));
    EXPECT_THAT([] { Expression("(1 + 2"); },
                ThrowsMessage<PlatformError>(HasSubstr("closing parenthesis")));
    EXPECT_THAT([] { Expression("[T"); },
                ThrowsMessage<PlatformError>(HasSubstr("closing bracket")));
    EXPECT_THAT([] { Expression("1 2"); }, ThrowsMessage<PlatformError>(HasSubstr("position 3")));
    EXPECT_THROW(Expression(""), PlatformError);
    EXPECT_THROW(Expression("[]"), PlatformError);
    EXPECT_THROW(Expression("1,5"), PlatformError);
    EXPECT_THROW(Expression(std::string(100000, '-') + "1"), PlatformError);
    EXPECT_THROW(Expression(std::string(100000, '(')), PlatformError);
}

TEST(Expression, DeepStacksWork) {
    std::string text = "1";
    for (int i = 0; i < 40; ++i) text = "(" + text + ") + 1";
    EXPECT_EQ(value(text), 41);
    text = "1";
    for (int i = 0; i < 40; ++i) text = "1 + (" + text + ")";
    EXPECT_EQ(value(text), 41);
}

}  // namespace
}  // namespace velmora
