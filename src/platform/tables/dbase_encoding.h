// SPDX-License-Identifier: MIT
// The encodings of dBASE tables.
#pragma once

#include <string>
#include <vector>

namespace velmora::platform {

// The encoding in which a table's texts are read, "" when it is not known.
std::string dbaseEncoding(const std::string& path);

// The bytes of a text in UTF-8 in another encoding; "" (unknown) stands for UTF-8. Throws
// PlatformError when it lacks one of the characters.
std::string encodedIn(const std::string& encoding, const std::string& text);
bool encodes(const std::string& encoding, const std::string& text);

// The encoding of a table into which the texts are to be written. When it lacks one of their
// characters the table is first rewritten in UTF-8, which a ".cpg" beside it says from then on:
// all values stay the same. Throws PlatformError, leaving the table as it is, when a text of the
// table does not fit into its field any more.
std::string encodingForTexts(const std::string& path, const std::vector<std::string>& texts);

}  // namespace velmora::platform
