// SPDX-License-Identifier: MIT
// The library's own lines of the class registry (class_registry.h).
#pragma once

#include <string>

namespace velmora {

// Writes (removes) the library's own classes with its module path; other lines stay. The file is
// replaced in one step. False when it cannot be written.
bool registerClasses(const std::string& module);
bool unregisterClasses(const std::string& module);

}  // namespace velmora
