// SPDX-License-Identifier: MIT
// A folder for the files of a fuzzer's inputs, in memory where the system has a place for that: on
// a disk a fuzzer tries a twentieth as many inputs.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace velmora::fuzz {

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

  private:
    std::string path_;
};

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
