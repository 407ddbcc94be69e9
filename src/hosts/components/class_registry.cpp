// SPDX-License-Identifier: MIT
#include "hosts/components/class_registry.h"

#include <cstdlib>
#include <fstream>

namespace velmora {

std::string classRegistryPath() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    if (config && *config) return std::string(config) + "/velmora/classes.txt";
    const char* home = std::getenv("HOME");
    return std::string(home ? home : "") + "/.config/velmora/classes.txt";
}

std::vector<std::string> registryLines() {
    std::vector<std::string> lines;
    std::ifstream file(classRegistryPath());
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
}

std::optional<RegisteredClass> findRegisteredClass(const std::string& progId) {
    for (const std::string& line : registryLines()) {
        if (!line.starts_with(progId + "\t")) continue;
        const auto second = line.find('\t', progId.size() + 1);
        RegisteredClass found{progId, {}, {}};
        if (second == std::string::npos ||
            !parseGuid(line.substr(progId.size() + 1, second - progId.size() - 1), found.clsid)) {
            continue;
        }
        found.module = line.substr(second + 1);
        return found;
    }
    return std::nullopt;
}

}  // namespace velmora
