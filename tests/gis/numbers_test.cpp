// SPDX-License-Identifier: MIT
#include "gis/numbers.h"

#include <gtest/gtest.h>

#include <cmath>

namespace velmora {
namespace {

TEST(Numbers, TextReadsBackAsTheSameDouble) {
    for (const double value : {0.1, -6.5e-5, 1.0 / 3, 1e300, 21.5, 123456789.125, 0.0}) {
        EXPECT_EQ(strictNumber(numberText(value)), value);
    }
    EXPECT_EQ(numberText(0.5), "0.5");
    EXPECT_EQ(numberText(400000), "400000");
    EXPECT_EQ(numberText(1000), "1000");
    EXPECT_EQ(numberText(-6.5e-5), "-6.5e-05");
    EXPECT_EQ(singleText(99.6F), "99.6");
}

TEST(Numbers, StrictTakesWholeNumbersOnly) {
    EXPECT_EQ(strictNumber(" 40 "), 40.0);
    EXPECT_EQ(strictNumber("+2.5"), 2.5);
    EXPECT_EQ(strictNumber("-.5"), -0.5);
    EXPECT_EQ(strictNumber("40m"), std::nullopt);
    EXPECT_EQ(strictNumber(""), std::nullopt);
    EXPECT_EQ(strictNumber("inf"), std::nullopt);
    EXPECT_EQ(strictNumber("1,5"), std::nullopt);
    EXPECT_EQ(strictNumber("+-3"), std::nullopt);
}

TEST(Numbers, LenientTakesTheLeadingNumber) {
    EXPECT_EQ(lenientNumber("2.5 m/s"), 2.5);
    EXPECT_EQ(lenientNumber("1,5"), 1.0);
    EXPECT_EQ(lenientNumber("abc"), 0.0);
    EXPECT_EQ(lenientNumber(""), 0.0);
    EXPECT_EQ(lenientNumber("nan"), 0.0);
    EXPECT_EQ(lenientNumber("1e400"), 0.0);
}

TEST(Numbers, PlacesLeaveZerosOut) {
    EXPECT_EQ(formatPlaces(95.0 / 60, 2), "1.58");
    EXPECT_EQ(formatPlaces(0.5, 2), ".5");
    EXPECT_EQ(formatPlaces(3, 2), "3.");
    EXPECT_EQ(formatPlaces(0, 2), ".");
    EXPECT_EQ(formatPlaces(-0.25, 2), "-.25");
    EXPECT_EQ(formatPlaces(10, 0), "10");
    EXPECT_EQ(formatPlaces(0.0005, 3), ".001");
}

}  // namespace
}  // namespace velmora
