// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace velmora::platform {

// A PlatformError that names the file and the system's reason (errno).
[[noreturn]] void throwFileError(const std::string& what, const std::string& path);

// An open file; the calls are repeated when a signal interrupts them, and short writes go on.
class PosixFile {
  public:
    // `flags` as open() takes them. Throws PlatformError, whose text begins with `what`.
    PosixFile(std::string path, int flags, const std::string& what);
    ~PosixFile();
    PosixFile(const PosixFile&) = delete;
    PosixFile& operator=(const PosixFile&) = delete;

    int descriptor() const { return file_; }
    // All bytes, at the file's own position or at an offset. Throws PlatformError.
    void write(const char* data, std::size_t size);
    void writeAt(const char* data, std::size_t size, std::size_t offset);
    // At most `size` bytes; fewer only where the file ends. Throws PlatformError.
    std::size_t read(char* data, std::size_t size);
    std::size_t readAt(char* data, std::size_t size, std::size_t offset) const;
    std::size_t size() const;
    // Throws PlatformError when what was written could not be stored.
    void close();

  private:
    std::string path_;
    int file_ = -1;
};

enum class OldContent { dropped, overwritten };  // overwritten: a longer old tail stays
void writeWholeFile(const std::string& path, const std::string& bytes,
                    OldContent old = OldContent::dropped);
std::string readWholeFile(const std::string& path, std::size_t most);
void removeTree(const std::string& path) noexcept;

// Whether a file (a folder) is there. Throws PlatformError when the system cannot tell, which is
// another answer than no.
bool isFile(const std::string& path);
bool isFolder(const std::string& path);

// Whether what is written is also asked to reach the disk (file_system.h).
bool syncing();

// Asks that the file or folder reaches the disk; nothing while syncing is off. Throws
// PlatformError.
void syncToDisk(const std::string& path);
// The same for everything on the file system that holds the folder, in one pass.
void syncFileSystemOf(const std::string& folder);

// Gives a finished file the name of another, which it replaces, so that after a power cut the name
// stands for the old file or the new one, whole. Throws PlatformError, and then the old file stays.
void replaceDurably(const std::string& finished, const std::string& target);

// Gives a finished folder the name of another folder or file, which is deleted then. Where the file
// system can, the two names are exchanged at once; elsewhere the old one steps aside, and comes
// back when the new one cannot have the name. Nothing is synced. Throws PlatformError, and then the
// old one stays.
enum class Exchange { whereItCan, never };
void replaceTree(const std::string& finished, const std::string& target,
                 Exchange exchange = Exchange::whereItCan);

// A path beside `path`, on the same file system, for its unfinished form. It tells the process and
// the machine.
std::string unfinishedPath(const std::string& path);
// The same for what had the name until something new has it.
std::string asidePath(const std::string& path);

// Whether the name of an unfinished file tells its process.
bool tellsItsProcess(const std::string& name);

// Removes what processes that are gone left unfinished in a folder, and puts back what stood aside
// when nothing has its name. What a living process works on stays, and what another machine wrote
// during the last day. Failures are ignored.
void sweepUnfinished(const std::string& folder) noexcept;

}  // namespace velmora::platform
