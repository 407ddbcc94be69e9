// SPDX-License-Identifier: MIT
#include "gis/month_names.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(MonthNames, ThereAndBack) {
    EXPECT_EQ(GetMonthName(1), "Jan");
    EXPECT_EQ(GetMonthName(12), "Dec");
    for (int m = 1; m <= 12; ++m) EXPECT_EQ(GetMonthNumber(GetMonthName(m)), m);
}

TEST(MonthNames, OthersAreNone) {
    EXPECT_EQ(GetMonthName(0), "");
    EXPECT_EQ(GetMonthName(13), "");
    EXPECT_EQ(GetMonthNumber("jan"), 0);
    EXPECT_EQ(GetMonthNumber("January"), 0);
    EXPECT_EQ(GetMonthNumber(""), 0);
}

}  // namespace
}  // namespace velmora
