// SPDX-License-Identifier: MIT
// The code page of settings files: Windows-1252. Its five undefined bytes (81, 8D, 8F, 90, 9D)
// stand for the control characters of the same number, so that every byte survives a round trip.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

// A character that the code page lacks becomes '?'; so does each byte that is not UTF-8.
std::string windows1252FromUtf8(std::string_view utf8);
std::string utf8FromWindows1252(std::string_view bytes);

// The characters of a text that the code page lacks, each once, in their order.
std::string lostCharacters(std::string_view utf8);

}  // namespace velmora
