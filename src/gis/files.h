// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace velmora {

// The beginning of every name under which something unfinished lies. What a killed run left is
// removed when the next one locks the folder, or edits or copies a file in it.
constexpr const char* kUnfinishedPrefix = ".velmora-unfinished-";

enum class SpecialFolder { temporary = 2 };

// Held while a run works in a folder; letting it go frees the folder.
class IFolderLock {
  public:
    virtual ~IFolderLock() = default;
};

// Files and folders. Failures are PlatformErrors that name the file.
class IFileSystem {
  public:
    virtual ~IFileSystem() = default;
    virtual bool fileExists(const std::string& path) const = 0;
    virtual bool folderExists(const std::string& path) const = 0;
    virtual std::string specialFolder(SpecialFolder folder) const = 0;
    // When the file was last written, local time: "2026-04-30 17:05:00".
    virtual std::string lastModified(const std::string& path) const = 0;
    virtual void deleteFile(const std::string& path) = 0;  // no error when there is none
    virtual void createFolder(const std::string& path) = 0;
    // Copies a file whole; an older one of that name is replaced. Copied, replaced and overwritten
    // files are asked to reach the disk at once.
    virtual void copyFile(const std::string& from, const std::string& to) = 0;
    // Puts a whole file in the place of another, in one step.
    virtual void replaceFile(const std::string& from, const std::string& to) = 0;
    // Writes a file that is there whole or not at all; an older one of that name is replaced.
    virtual void storeFile(const std::string& path, const std::string& bytes) = 0;
    // The first bytes of a regular file, at most `most` of them.
    virtual std::string readBeginning(const std::string& path, std::size_t most) const = 0;
    // Writes from byte 0 without truncating; creates a missing file.
    virtual void writeOver(const std::string& path, const std::string& bytes) = 0;
    // Throws when the folder is missing or cannot be written to, or when another run holds it.
    virtual std::unique_ptr<IFolderLock> lockFolder(const std::string& folder) = 0;
    // The same for those who only read what runs make: any number of them hold it at once, but none
    // while a run works. A run waits for them some seconds.
    virtual std::unique_ptr<IFolderLock> shareFolder(const std::string& folder) = 0;
    // Asks that everything written below the folder reaches the disk: the last act of whoever wrote
    // there. Throws when something could not be stored.
    virtual void settle(const std::string& folder) = 0;
    // Bytes left on the disk of a folder; nothing where that cannot be known.
    virtual std::optional<std::uint64_t> freeSpace(const std::string& folder) const = 0;
};

}  // namespace velmora
