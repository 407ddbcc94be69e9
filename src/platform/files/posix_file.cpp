// SPDX-License-Identifier: MIT
#include "platform/files/posix_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include "gis/errors.h"

namespace velmora::platform {

namespace {

// Repeats a call that a signal interrupts.
template <class Call>
auto repeated(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

// What stands under a path, 0 for nothing: a name that no file can have is none.
mode_t kindOf(const std::string& path) {
    struct stat status {};
    if (repeated([&] { return ::stat(path.c_str(), &status); }) == 0) return status.st_mode;
    for (const int absent : {ENOENT, ENOTDIR, ENAMETOOLONG, ELOOP}) {
        if (errno == absent) return 0;
    }
    throwFileError("Cannot look at", path);
}

}  // namespace

bool isFile(const std::string& path) { return S_ISREG(kindOf(path)); }
bool isFolder(const std::string& path) { return S_ISDIR(kindOf(path)); }

void throwFileError(const std::string& what, const std::string& path) {
    const int reason = errno;
    throw PlatformError(what + " " + path + ": " + std::strerror(reason), {.file = path});
}

PosixFile::PosixFile(std::string path, int flags, const std::string& what)
    : path_(std::move(path)),
      file_(repeated([&] { return ::open(path_.c_str(), flags | O_CLOEXEC, 0666); })) {
    if (file_ < 0) throwFileError(what, path_);
}

PosixFile::~PosixFile() {
    if (file_ >= 0) ::close(file_);
}

void PosixFile::write(const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t written = repeated([&] { return ::write(file_, data, size); });
        if (written < 0) throwFileError("Cannot write", path_);
        data += written;
        size -= static_cast<std::size_t>(written);
    }
}

void PosixFile::writeAt(const char* data, std::size_t size, std::size_t offset) {
    while (size > 0) {
        const ssize_t written =
            repeated([&] { return ::pwrite(file_, data, size, static_cast<off_t>(offset)); });
        if (written < 0) throwFileError("Cannot write", path_);
        data += written;
        offset += static_cast<std::size_t>(written);
        size -= static_cast<std::size_t>(written);
    }
}

std::size_t PosixFile::read(char* data, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t got = repeated([&] { return ::read(file_, data + done, size - done); });
        if (got < 0) throwFileError("Cannot read", path_);
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

std::size_t PosixFile::readAt(char* data, std::size_t size, std::size_t offset) const {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t got = repeated([&] {
            return ::pread(file_, data + done, size - done, static_cast<off_t>(offset + done));
        });
        if (got < 0) throwFileError("Cannot read", path_);
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

std::size_t PosixFile::size() const {
    struct stat status {};
    if (::fstat(file_, &status) != 0) throwFileError("Cannot read", path_);
    return static_cast<std::size_t>(status.st_size);
}

// An interrupted close has closed the file all the same.
void PosixFile::close() {
    if (::close(std::exchange(file_, -1)) != 0 && errno != EINTR) {
        throwFileError("Cannot write", path_);
    }
}

void writeWholeFile(const std::string& path, const std::string& bytes, OldContent old) {
    const int truncate = old == OldContent::dropped ? O_TRUNC : 0;
    PosixFile file(path, O_WRONLY | O_CREAT | truncate, "Cannot create");
    file.write(bytes.data(), bytes.size());
    file.close();
}

std::string readWholeFile(const std::string& path, std::size_t most) {
    constexpr std::size_t kPiece = 65536;
    PosixFile file(path, O_RDONLY, "Cannot open");
    std::string bytes;
    std::error_code unknown;  // of what is no file
    const std::uintmax_t size = std::filesystem::file_size(path, unknown);
    if (!unknown) bytes.reserve(std::min<std::uintmax_t>(size, most) + kPiece);  // taken at once
    while (bytes.size() < most) {
        const std::size_t before = bytes.size();
        const std::size_t wanted = std::min(kPiece, most - before);
        bytes.resize(before + wanted);
        const std::size_t got = file.read(bytes.data() + before, wanted);
        bytes.resize(before + got);
        if (got < wanted) break;
    }
    return bytes;
}

void removeTree(const std::string& path) noexcept {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

}  // namespace velmora::platform
