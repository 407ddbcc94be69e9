// SPDX-License-Identifier: MIT
#include "precip/reference_grids.h"

#include <gtest/gtest.h>

#include "gis/errors.h"

namespace velmora {
namespace {

TEST(PrismGridPath, TakesTheMonthsDigits) {
    EXPECT_EQ(prismGridPath("/g/ppt_07", 1), "/g/ppt_01");
    EXPECT_EQ(prismGridPath("/g/ppt_01", 12), "/g/ppt_12");
    EXPECT_EQ(prismGridPath("07", 9), "09");
    EXPECT_THROW(prismGridPath("7", 9), PlatformError);
    EXPECT_THROW(prismGridPath("", 9), PlatformError);
}

}  // namespace
}  // namespace velmora
