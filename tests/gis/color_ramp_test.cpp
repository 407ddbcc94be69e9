// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "gis/map_document.h"

namespace velmora {
namespace {

TEST(ColorRamp, RunsFromTheFirstColourToTheLast) {
    const auto colors = AlgorithmicColorRamp{{0, 255, 0}, {50, 50, 100}, 1, 256}.colors();
    ASSERT_EQ(colors.size(), 256U);
    EXPECT_EQ(colors.front(), (Rgb{0, 255, 0}));
    EXPECT_EQ(colors.back(), (Rgb{50, 50, 100}));
    for (std::size_t i = 1; i < colors.size(); ++i) EXPECT_LE(colors[i].green, colors[i - 1].green);
}

TEST(ColorRamp, GreysStayGrey) {
    for (const Rgb& c : AlgorithmicColorRamp{{0, 0, 0}, {255, 255, 255}, 1, 9}.colors()) {
        EXPECT_NEAR(c.red, c.green, 1);
        EXPECT_NEAR(c.red, c.blue, 1);
    }
}

TEST(ColorRamp, RefusesWhatIsNoColour) {
    EXPECT_THROW((AlgorithmicColorRamp{{0, 256, 0}, {0, 0, 0}, 1, 256}.colors()), PlatformError);
    EXPECT_THROW((AlgorithmicColorRamp{{0, 0, 0}, {-1, 0, 0}, 1, 256}.colors()), PlatformError);
    EXPECT_THROW((AlgorithmicColorRamp{{0, 0, 0}, {1, 0, 0}, 1, 1}.colors()), PlatformError);
}

}  // namespace
}  // namespace velmora
