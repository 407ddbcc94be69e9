// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora::platform {

// Whether the file begins like the genuine Access databases of all versions do.
bool isAccessFile(const std::string& path);

// The SQLite database "<path>.sqlite" that stands for an Access file: made on the first call with
// every table of the user, with its rows and types, and opened by all later ones. The Access file
// is only read. Of two processes that come at once the second waits for the first. Throws
// PlatformError, leaving nothing behind, when the file is damaged: when it is cut off, when a page
// is not of the kind or table that the file says, when a table gives other rows than it counts, or
// when reading fails in any other way.
std::string importedDatabase(const std::string& path);

// Whether `path` is an Access file without a copy. Throws PlatformError when it cannot be read.
bool needsImport(const std::string& path);

// What to tell the user when `path` is an Access file that has changed since its copy was made, ""
// for any other file and for one without a copy. Throws PlatformError when it cannot be read.
std::string staleAccessCopy(const std::string& path);

}  // namespace velmora::platform
