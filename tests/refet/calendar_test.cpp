// SPDX-License-Identifier: MIT
#include "refet/equations/calendar.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(Calendar, DayOfYearCountsTheRealLeapDay) {
    EXPECT_EQ(DayOfYear(1, 3, 2000), 61);
    EXPECT_EQ(DayOfYear(1, 3, 2001), 60);
    EXPECT_EQ(DayOfYear(1, 1, 2001), 1);
    EXPECT_EQ(DayOfYear(31, 12, 2001), 365);
    EXPECT_EQ(DayOfYear(31, 12, 2004), 366);
}

TEST(Calendar, MonthLengthsTurnTheLeapRuleAround) {
    EXPECT_EQ(DaysInMonth(2, 2000), 28);
    EXPECT_EQ(DaysInMonth(2, 2001), 29);
    EXPECT_EQ(DaysInMonth(2, 1900), 28);  // every fourth year, centuries too
    EXPECT_EQ(DaysInMonth(2, 2100), 28);
    EXPECT_EQ(DaysInMonth(1, 2001), 31);
    EXPECT_EQ(DaysInMonth(4, 2001), 30);
    EXPECT_EQ(DaysInMonth(13, 2001), 0);
    EXPECT_EQ(DaysInMonth(0, 2001), 0);
}

TEST(Calendar, RepresentativeDays) {
    EXPECT_EQ(representativeDay(1, 2001), 16);
    EXPECT_EQ(representativeDay(6, 2001), 15);
    EXPECT_EQ(representativeDay(2, 2001), 15);
    EXPECT_EQ(representativeDay(2, 2000), 14);
}

}  // namespace
}  // namespace velmora
