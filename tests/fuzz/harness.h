// SPDX-License-Identifier: MIT
// What the harnesses share: an input as text and in parts, trying what may be refused, requiring
// what must hold, and a folder for files.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "gis/errors.h"

namespace velmora::fuzz {

// In memory where the system has a place for that: on a disk a fuzzer tries a twentieth as many
// inputs.
class MemoryFolder {
  public:
    MemoryFolder() {
        const std::filesystem::path memory = "/dev/shm";
        const auto place =
            std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
        path_ = (place / ("velmora-fuzz-" + std::to_string(getpid()))).string();
        std::filesystem::create_directories(path_);
    }
    ~MemoryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    MemoryFolder(const MemoryFolder&) = delete;
    MemoryFolder& operator=(const MemoryFolder&) = delete;

    std::string file(const std::string& name) const { return path_ + "/" + name; }
    std::string write(const std::string& name, std::string_view bytes) const {
        std::ofstream(file(name), std::ios::binary) << bytes;
        return file(name);
    }
    std::string content(const std::string& name) const {
        std::ifstream input(file(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(input), {}};
    }

  private:
    std::string path_;
};

// The folder of this process, which ends with it.
inline const MemoryFolder& memoryFolder() {
    static const MemoryFolder folder;
    return folder;
}

// Does what may be refused with an error of the platform, and with nothing else.
template <class Body>
bool tried(Body body) {
    try {
        body();
        return true;
    } catch (const PlatformError&) {
        return false;
    }
}

// A finding of the fuzzer unless it holds.
inline void require(bool holds) {
    if (!holds) std::abort();
}

inline std::string_view text(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// Takes what begins with its own length, two bytes with the low one first, off the front of an
// input.
inline std::string_view takePart(std::string_view& input) {
    if (input.size() < 2) {
        input = {};
        return {};
    }
    const auto byte = [&](std::size_t i) {
        return static_cast<std::size_t>(static_cast<unsigned char>(input[i]));
    };
    const std::size_t length = std::min(byte(0) | byte(1) << 8U, input.size() - 2);
    const std::string_view part = input.substr(2, length);
    input.remove_prefix(2 + length);
    return part;
}

}  // namespace velmora::fuzz
