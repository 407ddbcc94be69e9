// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>

namespace velmora::platform {

static_assert(std::endian::native == std::endian::little);

inline std::uint32_t swapped(std::uint32_t value) { return __builtin_bswap32(value); }

inline void appendBytes(std::string& out, const void* data, std::size_t size) {
    out.append(static_cast<const char*>(data), size);
}
inline void appendInt16(std::string& out, std::uint16_t value) {
    value = __builtin_bswap16(value);
    appendBytes(out, &value, 2);
}
inline void appendInt32(std::string& out, std::uint32_t value) {
    value = swapped(value);
    appendBytes(out, &value, 4);
}
inline void appendDouble(std::string& out, double value) {
    const std::uint64_t bits = __builtin_bswap64(std::bit_cast<std::uint64_t>(value));
    appendBytes(out, &bits, 8);
}

inline std::uint32_t int32At(const char* data) {
    std::uint32_t value = 0;
    std::memcpy(&value, data, 4);
    return swapped(value);
}
inline double doubleAt(const char* data) {
    std::uint64_t value = 0;
    std::memcpy(&value, data, 8);
    return std::bit_cast<double>(__builtin_bswap64(value));
}

}  // namespace velmora::platform
