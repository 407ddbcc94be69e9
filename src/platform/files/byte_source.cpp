// SPDX-License-Identifier: MIT
#include "platform/files/byte_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/files/posix_file.h"

namespace velmora::platform {

ByteSource::ByteSource(const std::string& path)
    : path_(path), file_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    struct stat status {};
    if (file_ < 0) throwFileError("Cannot open", path);
    if (::fstat(file_, &status) != 0) {
        const int reason = errno;
        ::close(file_);
        errno = reason;
        throwFileError("Cannot read", path);
    }
    size_ = static_cast<std::uint64_t>(status.st_size);
}

ByteSource::~ByteSource() { ::close(file_); }

std::string ByteSource::read(std::uint64_t at, std::size_t count) const {
    std::string bytes(count, '\0');
    std::size_t done = 0;
    while (done < count) {
        const ssize_t got =
            ::pread(file_, bytes.data() + done, count - done, static_cast<off_t>(at + done));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throwFileError("Cannot read", path_);
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    bytes.resize(done);
    return bytes;
}

namespace {

std::uint32_t byteOf(std::string_view bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes[at]);
}

}  // namespace

std::uint32_t littleEndian(std::string_view bytes, std::size_t at) {
    return byteOf(bytes, at) | byteOf(bytes, at + 1) << 8U | byteOf(bytes, at + 2) << 16U |
           byteOf(bytes, at + 3) << 24U;
}

std::uint32_t bigEndian(std::string_view bytes, std::size_t at) {
    return byteOf(bytes, at) << 24U | byteOf(bytes, at + 1) << 16U | byteOf(bytes, at + 2) << 8U |
           byteOf(bytes, at + 3);
}

}  // namespace velmora::platform
