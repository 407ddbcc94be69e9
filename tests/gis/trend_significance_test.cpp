// SPDX-License-Identifier: MIT
#include "gis/trend_test.h"

#include <gtest/gtest.h>

#include <vector>

namespace velmora {
namespace {

// The table of Student's t, two-sided at 5 %.
TEST(TrendTest, ProbabilitiesAreThoseOfStudentsTable) {
    const std::vector<std::pair<int, double>> table = {{1, 12.706}, {2, 4.303},  {5, 2.571},
                                                       {10, 2.228}, {30, 2.042}, {120, 1.980}};
    for (const auto& [degrees, t] : table) {
        EXPECT_NEAR(probabilityBeyond(t, degrees), 0.05, 5e-5) << degrees;
        EXPECT_NEAR(probabilityBeyond(-t, degrees), 0.05, 5e-5) << degrees;
    }
    EXPECT_NEAR(probabilityBeyond(63.657, 1), 0.01, 1e-6);
    EXPECT_NEAR(probabilityBeyond(0, 7), 1, 1e-12);
}

// By hand: slope 0.6, residual sum of squares 2.4, Sxx 10, standard error sqrt(0.8 / 10), t 2.1213
// with 3 degrees of freedom.
TEST(TrendTest, SlopesAreTested) {
    const std::vector<ElevationPair> pairs = {{1, 2}, {2, 4}, {3, 5}, {4, 4}, {5, 5}};
    const auto found = slopeProbability(pairs, fitLinearTrend(pairs));
    ASSERT_TRUE(found);
    EXPECT_NEAR(*found, 0.12402, 1e-5);
    EXPECT_NEAR(*found, probabilityBeyond(2.12132, 3), 1e-5);
}

TEST(TrendTest, ALineThroughAllIsNoChanceButThroughTwoIsNoEvidence) {
    const std::vector<ElevationPair> all = {{100, 3}, {200, 5}, {300, 7}, {400, 9}};
    EXPECT_EQ(slopeProbability(all, fitLinearTrend(all)), 0.0);
    const std::vector<ElevationPair> two = {{100, 3}, {200, 5}};
    EXPECT_EQ(slopeProbability(two, fitLinearTrend(two)), 1.0);
    const std::vector<ElevationPair> flat = {{100, 4}, {200, 4}, {300, 4}};
    EXPECT_EQ(slopeProbability(flat, fitLinearTrend(flat)), std::nullopt);
}

}  // namespace
}  // namespace velmora
