// SPDX-License-Identifier: MIT
// How files reach the disk and take each other's names.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/file_system.h"
#include "platform/files/posix_file.h"

namespace velmora::platform {

namespace {

std::atomic<bool> syncingOn = true;

constexpr const char* kCannotOpen = "Cannot open";

template <class Sync>
void synced(const std::string& path, Sync sync) {
    if (!syncing()) return;
    const PosixFile file(path, O_RDONLY, kCannotOpen);
    int status = sync(file.descriptor());
    while (status != 0 && errno == EINTR) status = sync(file.descriptor());
    // Some network file systems do not know the question for folders (EINVAL).
    if (status != 0 && errno != EINVAL) throwFileError("Cannot store on the disk", path);
}

std::string folderOf(const std::string& path) {
    const std::string folder = parentFolderName(path);
    return folder.empty() ? "." : folder;
}

bool isThere(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

bool renamed(const std::string& from, const std::string& to) {
    return ::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace

void setSyncing(bool on) { syncingOn = on; }
bool syncing() { return syncingOn; }

void syncToDisk(const std::string& path) { synced(path, ::fsync); }

void syncFileSystemOf(const std::string& folder) { synced(folder, ::syncfs); }

void replaceDurably(const std::string& finished, const std::string& target) {
    syncToDisk(finished);
    if (!renamed(finished, target)) throwFileError("Cannot replace", target);
    syncToDisk(folderOf(target));
}

void replaceTree(const std::string& finished, const std::string& target, Exchange exchange) {
    if (!isThere(target)) {
        if (!renamed(finished, target)) throwFileError("Cannot replace", target);
        return;
    }
    if (exchange == Exchange::whereItCan) {
        if (::renameat2(AT_FDCWD, finished.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) ==
            0) {
            removeTree(finished);
            return;
        }
        // What a file system without exchanges says, or a system without the call.
        if (errno != EINVAL && errno != ENOSYS) throwFileError("Cannot replace", target);
    }
    const std::string aside = asidePath(target);
    removeTree(aside);
    if (!renamed(target, aside)) throwFileError("Cannot replace", target);
    if (!renamed(finished, target)) {
        const int reason = errno;
        renamed(aside, target);
        errno = reason;
        throwFileError("Cannot replace", target);
    }
    removeTree(aside);
}

}  // namespace velmora::platform
