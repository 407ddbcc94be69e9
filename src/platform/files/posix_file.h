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

// Whether what is written is also asked to reach the disk (the default). Off, a power cut may lose
// what a program that has ended wrote; a killed program loses nothing either way.
void setSyncing(bool on);
bool syncing();

// Asks that the file or folder reaches the disk; nothing while syncing is off. Throws
// PlatformError.
void syncToDisk(const std::string& path);

// Gives a finished file the name of another, which it replaces, so that after a power cut the name
// stands for the old file or the new one, whole. Throws PlatformError, and then the old file stays.
void replaceDurably(const std::string& finished, const std::string& target);

// A path beside `path`, on the same file system, for its unfinished form.
std::string unfinishedPath(const std::string& path);

}  // namespace velmora::platform
