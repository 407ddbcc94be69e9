// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velmora::platform {

// A file to be read here and there. Failures are PlatformErrors with the file and the system's
// reason.
class ByteSource {
  public:
    explicit ByteSource(const std::string& path);
    ~ByteSource();
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    const std::string& path() const { return path_; }
    std::uint64_t size() const { return size_; }
    // The bytes from `at` on, fewer at the end of the file.
    std::string read(std::uint64_t at, std::size_t count) const;

  private:
    std::string path_;
    int file_ = -1;
    std::uint64_t size_ = 0;
};

// Whole numbers of four bytes.
std::uint32_t littleEndian(std::string_view bytes, std::size_t at);
std::uint32_t bigEndian(std::string_view bytes, std::size_t at);

}  // namespace velmora::platform
