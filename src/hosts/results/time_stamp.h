// SPDX-License-Identifier: MIT
#pragma once

#include <fmt/chrono.h>

#include <ctime>
#include <string>

namespace velmora {

// The local time as a part of names: "20230714_160502".
inline std::string timeStamp() {
    return fmt::format("{:%Y%m%d_%H%M%S}", fmt::localtime(std::time(nullptr)));
}

}  // namespace velmora
