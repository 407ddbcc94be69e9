// SPDX-License-Identifier: MIT
#include "gis/windows1252.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(Windows1252, EveryByteSurvivesARoundTrip) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
    EXPECT_EQ(windows1252FromUtf8(utf8FromWindows1252(bytes)), bytes);
}

TEST(Windows1252, CharactersOfTheCodePage) {
    EXPECT_EQ(windows1252FromUtf8("\u20AC"), "\x80");
    EXPECT_EQ(windows1252FromUtf8("Se\u00F1or \u017D"), "Se\xF1or \x8E");
    EXPECT_EQ(utf8FromWindows1252("\x99"), "\u2122");
}

TEST(Windows1252, LostCharactersBecomeQuestionMarks) {
    EXPECT_EQ(windows1252FromUtf8("/\u6C34/dem"), "/?/dem");
    EXPECT_EQ(windows1252FromUtf8("a\xFF\xC3"), "a??");
    EXPECT_EQ(windows1252FromUtf8("\xF0\x9F\x92\xA7!"), "?!");
}

TEST(Windows1252, LostCharactersAreListedOnce) {
    EXPECT_EQ(lostCharacters("/S\u00E9/\u6C34?/\u6C34\u0141/\U0001F4A7"), "\u6C34\u0141\U0001F4A7");
    EXPECT_EQ(lostCharacters("plain? \u20AC"), "");
}

}  // namespace
}  // namespace velmora
