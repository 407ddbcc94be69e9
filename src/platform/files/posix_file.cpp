// SPDX-License-Identifier: MIT
#include "platform/files/posix_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "gis/errors.h"
#include "gis/files.h"
#include "gis/text.h"

namespace velmora::platform {

void throwFileError(const std::string& what, const std::string& path) {
    const int reason = errno;
    throw PlatformError(what + " " + path + ": " + std::strerror(reason));
}

void writeWholeFile(const std::string& path, const std::string& bytes, OldContent old) {
    const int truncate = old == OldContent::dropped ? O_TRUNC : 0;
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | truncate | O_CLOEXEC, 0666);
    if (file < 0) throwFileError("Cannot create", path);
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t written = ::write(file, bytes.data() + done, bytes.size() - done);
        if (written < 0) {
            const int reason = errno;
            ::close(file);
            errno = reason;
            throwFileError("Cannot write", path);
        }
        done += static_cast<std::size_t>(written);
    }
    if (::close(file) != 0) throwFileError("Cannot write", path);
}

std::string readWholeFile(const std::string& path, std::size_t most) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) throwFileError("Cannot open", path);
    std::string bytes;
    char buffer[65536];
    while (bytes.size() < most) {
        const ssize_t got = ::read(file, buffer, std::min(sizeof buffer, most - bytes.size()));
        if (got < 0) {
            const int reason = errno;
            ::close(file);
            errno = reason;
            throwFileError("Cannot read", path);
        }
        if (got == 0) break;
        bytes.append(buffer, static_cast<std::size_t>(got));
    }
    ::close(file);
    return bytes;
}

namespace {

std::atomic<bool> syncingOn = true;

}  // namespace

void setSyncing(bool on) { syncingOn = on; }
bool syncing() { return syncingOn; }

void syncToDisk(const std::string& path) {
    if (!syncing()) return;
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) throwFileError("Cannot open", path);
    const int status = ::fsync(file);
    const int reason = errno;
    ::close(file);
    errno = reason;
    if (status != 0) throwFileError("Cannot store on the disk", path);
}

void replaceDurably(const std::string& finished, const std::string& target) {
    syncToDisk(finished);
    if (::rename(finished.c_str(), target.c_str()) != 0) throwFileError("Cannot replace", target);
    const std::string folder = parentFolderName(target);
    syncToDisk(folder.empty() ? "." : folder);
}

void removeTree(const std::string& path) noexcept {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::string unfinishedPath(const std::string& path) {
    return joinedPath(parentFolderName(path),
                      kUnfinishedPrefix + std::to_string(::getpid()) + "-" + fileName(path));
}

}  // namespace velmora::platform
