// SPDX-License-Identifier: MIT
// The per-user class registry: a text file with one class a line, "ProgID <tab> class identifier
// <tab> module path". Hosts look a class up by its ProgID and load the module named there.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "shell/com.h"

namespace velmora {

struct RegisteredClass {
    std::string progId;
    Guid clsid;
    std::string module;
};

// "velmora/classes.txt" in $XDG_CONFIG_HOME, or in ~/.config.
std::string classRegistryPath();

// The entry of a ProgID, or nothing.
std::optional<RegisteredClass> findRegisteredClass(const std::string& progId);

// All lines as they stand; none when there is no file.
std::vector<std::string> registryLines();

}  // namespace velmora
