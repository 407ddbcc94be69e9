// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora {

// What the program was built from: the state of its source and the compiler.
std::string buildState();

}  // namespace velmora
