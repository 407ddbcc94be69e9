// SPDX-License-Identifier: MIT
#include "gis/connection_text.h"

#include <gtest/gtest.h>

#include "gis/errors.h"

namespace velmora {
namespace {

TEST(ConnectionText, OrdinaryValuesStandAsTheyAre) {
    for (const char* value : {"/home/a b/out", "C:\\data\\x", "it's", "a=b", "x]y", "{a}", ""}) {
        EXPECT_EQ(connectionValue(value), value);
    }
    EXPECT_EQ(connectionValue("b;x"), "\"b;x\"");
    EXPECT_EQ(connectionValue("\"q\";"), "\"\"\"q\"\";\"");
}

TEST(ConnectionText, EveryValueComesBack) {
    for (const char* value : {"/home/a b/out", "b;x", "b;x]y'z", "\"q\"", "'", "a;Data Source=b",
                              " x ", "a=b;c=d", "{a;b}", "\";\"", "x\n"}) {
        const std::string text = "Provider = P;Data Source=" + connectionValue(value) +
                                 ";Extended Properties=e;Geometry=OBJECT";
        EXPECT_EQ(connectionPart(text, "data source"), value);
        EXPECT_EQ(connectionPart(text, "Provider"), "P");
        EXPECT_EQ(connectionPart(text, "Geometry"), "OBJECT");
        EXPECT_EQ(connectionPart(text, "b"), "");
    }
    EXPECT_EQ(connectionPart("DBASE 5.0;DATABASE=/a", "DATABASE"), "/a");
    EXPECT_EQ(connectionPart("", "x"), "");
    EXPECT_EQ(connectionPart("x", "x"), "");
    EXPECT_THROW(connectionPart("x=\"a;y=b", "x"), PlatformError);
    EXPECT_THROW(connectionPart("x=\"a\"b;y=b", "x"), PlatformError);
}

TEST(ConnectionText, NamesInQueries) {
    EXPECT_EQ(bracketedName("a]b"), "[a]]b]");
    EXPECT_EQ(fieldInQuery("Descriptio"), "Descriptio");
    EXPECT_EQ(fieldInQuery("Größe"), "Größe");
    EXPECT_EQ(fieldInQuery("crop type"), "[crop type]");
    EXPECT_EQ(fieldInQuery("2020"), "[2020]");
    EXPECT_EQ(fieldInQuery("From"), "[From]");
    EXPECT_EQ(tableInQuery("/a b/wx"), "/a b/wx");
    EXPECT_EQ(tableInQuery("/a/it's"), "[/a/it's]");
    EXPECT_EQ(tableInQuery("/to where it is/wx"), "[/to where it is/wx]");
}

}  // namespace
}  // namespace velmora
