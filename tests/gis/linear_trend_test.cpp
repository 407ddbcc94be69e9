// SPDX-License-Identifier: MIT
#include "gis/linear_trend.h"

#include <gtest/gtest.h>

#include <vector>

#include "gis/errors.h"

namespace velmora {
namespace {

TEST(LinearTrend, ByHand) {
    // n 3, Sx 6, Sy 15, Sxy 1*2 + 2*5 + 3*8 = 36, Sxx 14: b = (108 - 90) / (42 - 36) = 3,
    // a = (15 - 18) / 3 = -1.
    const std::vector<ElevationPair> pairs = {{1, 2}, {2, 5}, {3, 8}};
    const LinearTrend trend = fitLinearTrend(pairs);
    EXPECT_DOUBLE_EQ(trend.b, 3);
    EXPECT_DOUBLE_EQ(trend.a, -1);
}

TEST(LinearTrend, MinimisesSquares) {
    // n 4, Sx 10, Sy 14, Sxy 1*2 + 2*3 + 3*3 + 4*6 = 41, Sxx 30: b = 24 / 20, a = 2 / 4.
    const std::vector<ElevationPair> pairs = {{1, 2}, {2, 3}, {3, 3}, {4, 6}};
    const LinearTrend trend = fitLinearTrend(pairs);
    EXPECT_DOUBLE_EQ(trend.b, 1.2);
    EXPECT_DOUBLE_EQ(trend.a, 0.5);
}

TEST(LinearTrend, NeedsTwoElevations) {
    EXPECT_THROW(fitLinearTrend({}), PlatformError);
    EXPECT_THROW(fitLinearTrend(std::vector<ElevationPair>{{1, 2}}), PlatformError);
    // 0.1 is no exact binary fraction: the denominator is only nearly 0.
    const std::vector<ElevationPair> level(7, {1500.1, 3});
    EXPECT_THROW(fitLinearTrend(level), PlatformError);
}

TEST(LinearTrend, TheShareThatItExplains) {
    // Mean 3.5, squares around it 9; the line 0.5 + 1.2 z leaves 0.3^2 + 0.1^2 + 1.1^2 + 0.7^2.
    const std::vector<ElevationPair> pairs = {{1, 2}, {2, 3}, {3, 3}, {4, 6}};
    EXPECT_NEAR(*rSquared(pairs, fitLinearTrend(pairs)), 1 - 1.8 / 9, 1e-12);
    const std::vector<ElevationPair> line = {{1, 2}, {2, 5}, {3, 8}};
    EXPECT_NEAR(*rSquared(line, fitLinearTrend(line)), 1, 1e-12);
    const std::vector<ElevationPair> level = {{1, 0.1}, {2, 0.1}, {3, 0.1}};
    EXPECT_FALSE(rSquared(level, fitLinearTrend(level)));
}

}  // namespace
}  // namespace velmora
