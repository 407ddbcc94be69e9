// SPDX-License-Identifier: MIT
#include "gis/text.h"

#include <gtest/gtest.h>

#include <vector>

namespace velmora {
namespace {

TEST(Text, PathsComeApart) {
    EXPECT_EQ(parentFolderName("/a/b/c.shp"), "/a/b");
    EXPECT_EQ(parentFolderName("/c.shp"), "/");
    EXPECT_EQ(parentFolderName("c.shp"), "");
    EXPECT_EQ(parentFolderName("C:\\data\\c.shp"), "C:\\data");
    EXPECT_EQ(fileName("/a/b/c.shp"), "c.shp");
    EXPECT_EQ(baseName("/a/b/c.v2.shp"), "c.v2");
    EXPECT_EQ(withoutExtension("/a.b/c"), "/a.b/c");
    EXPECT_EQ(withoutExtension("/a/.hidden"), "/a/.hidden");
    EXPECT_EQ(joinedPath("/a", "b"), "/a/b");
    EXPECT_EQ(joinedPath("/a/", "b"), "/a/b");
    EXPECT_EQ(joinedPath("", "b"), "b");
}

TEST(Text, NamesCompareWithoutCase) {
    EXPECT_TRUE(sameIgnoringCase("ELEVATION", "Elevation"));
    EXPECT_FALSE(sameIgnoringCase("ELEVATION", "ELEVATIO"));
    EXPECT_EQ(trimmedRight(" a b  "), " a b");
    EXPECT_EQ(trimmedRight("   "), "");
    EXPECT_EQ(joinedNames(std::vector<std::string>{"a", "b"}), "a, b");
}

TEST(Text, CountsHaveTheirPlural) {
    EXPECT_EQ(counted(0, "error"), "0 errors");
    EXPECT_EQ(counted(1, "error"), "1 error");
    EXPECT_EQ(counted(std::size_t{2}, "error"), "2 errors");
}

}  // namespace
}  // namespace velmora
