// SPDX-License-Identifier: MIT
// The encodings of dBASE tables.
#pragma once

#include <string>

namespace velmora::platform {

constexpr const char* kUtf8 = "UTF-8";

// The encoding in which a table's texts are read, "" when it is not known. A ".cpg" beside the
// table tells it, else the language mark in its header.
std::string dbaseEncoding(const std::string& path);

// Whether texts are read as the bytes stand: in UTF-8, and where nothing is known.
bool isUtf8(const std::string& encoding);

// The bytes of a text in UTF-8 in another encoding; "" (unknown) stands for UTF-8. Throws
// PlatformError when it lacks one of the characters.
std::string encodedIn(const std::string& encoding, const std::string& text);
bool encodes(const std::string& encoding, const std::string& text);

// The text in UTF-8 that bytes in another encoding mean.
std::string fromEncoding(const std::string& encoding, const std::string& bytes);

}  // namespace velmora::platform
