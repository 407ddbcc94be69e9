// SPDX-License-Identifier: MIT
#include "gis/windows1252.h"

#include <algorithm>
#include <array>

namespace velmora {

namespace {

// Code points of the bytes 80 to 9F.
constexpr std::array<char32_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr char32_t kInvalid = 0xFFFFFFFF;

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

// Takes one code point from the front of `text`; an invalid byte is taken alone.
char32_t takeCodePoint(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    std::size_t length = 1;
    char32_t value = lead;
    if (lead >= 0xF0 && lead < 0xF8) {
        length = 4;
        value = lead & 0x07U;
    } else if (lead >= 0xE0 && lead < 0xF0) {
        length = 3;
        value = lead & 0x0FU;
    } else if (lead >= 0xC2 && lead < 0xE0) {
        length = 2;
        value = lead & 0x1FU;
    } else if (lead >= 0x80) {
        value = kInvalid;
    }
    if (length > text.size() ||
        !std::all_of(text.begin() + 1, text.begin() + static_cast<long>(length), isContinuation)) {
        length = 1;
        value = kInvalid;
    }
    for (std::size_t i = 1; i < length; ++i) {
        value = (value << 6U) | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    text.remove_prefix(length);
    return value;
}

char byteOf(char32_t point) {
    if (point < 0x80 || (point >= 0xA0 && point <= 0xFF)) return static_cast<char>(point);
    const auto* found = std::find(kUpperControls.begin(), kUpperControls.end(), point);
    if (found == kUpperControls.end()) return '?';
    return static_cast<char>(0x80 + (found - kUpperControls.begin()));
}

void appendUtf8(std::string& out, char32_t point) {
    if (point < 0x80) {
        out += static_cast<char>(point);
    } else if (point < 0x800) {
        out += static_cast<char>(0xC0U | (point >> 6U));
        out += static_cast<char>(0x80U | (point & 0x3FU));
    } else {
        out += static_cast<char>(0xE0U | (point >> 12U));
        out += static_cast<char>(0x80U | ((point >> 6U) & 0x3FU));
        out += static_cast<char>(0x80U | (point & 0x3FU));
    }
}

}  // namespace

std::string windows1252FromUtf8(std::string_view utf8) {
    std::string bytes;
    while (!utf8.empty()) bytes += byteOf(takeCodePoint(utf8));
    return bytes;
}

std::string lostCharacters(std::string_view utf8) {
    std::string lost;
    while (!utf8.empty()) {
        const std::string_view before = utf8;
        const char32_t point = takeCodePoint(utf8);
        const std::string_view character = before.substr(0, before.size() - utf8.size());
        const bool kept = point == '?' || byteOf(point) != '?';
        if (!kept && lost.find(character) == std::string::npos) lost += character;
    }
    return lost;
}

std::string utf8FromWindows1252(std::string_view bytes) {
    std::string utf8;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        appendUtf8(utf8, byte >= 0x80 && byte < 0xA0 ? kUpperControls[byte - 0x80U] : byte);
    }
    return utf8;
}

}  // namespace velmora
