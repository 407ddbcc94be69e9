// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace velmora::platform {

// A PlatformError that names the file and the system's reason (errno).
[[noreturn]] void throwFileError(const std::string& what, const std::string& path);

enum class OldContent { dropped, overwritten };  // overwritten: a longer old tail stays
void writeWholeFile(const std::string& path, const std::string& bytes,
                    OldContent old = OldContent::dropped);
std::string readWholeFile(const std::string& path, std::size_t most);
void removeTree(const std::string& path) noexcept;

// A path beside `path`, on the same file system, for its unfinished form.
std::string unfinishedPath(const std::string& path);

}  // namespace velmora::platform
