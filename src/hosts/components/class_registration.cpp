// SPDX-License-Identifier: MIT
#include "hosts/components/class_registration.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <vector>

#include "hosts/components/class_registry.h"
#include "shell/component_ids.h"

namespace velmora {

namespace fs = std::filesystem;

namespace {

std::string lineOf(const ComponentId& served, const std::string& module) {
    return std::string(served.progId) + "\t" + guidText(served.clsid) + "\t" + module;
}

// Whether the file or folder has reached the disk.
bool isStored(const fs::path& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return false;
    const bool stored = ::fsync(file) == 0;
    ::close(file);
    return stored;
}

// The old list stays until the new one is whole.
bool writeLines(const std::vector<std::string>& lines) {
    const fs::path path = classRegistryPath();
    const fs::path beside = path.string() + "." + std::to_string(::getpid());
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    std::ofstream file(beside);
    for (const std::string& line : lines) file << line << '\n';
    file.close();
    const bool whole = file.good() && isStored(beside);
    if (whole) fs::rename(beside, path, error);
    if (whole && !error) {
        isStored(path.parent_path());  // some file systems cannot tell of folders
        return true;
    }
    fs::remove(beside, error);
    return false;
}

}  // namespace

bool registerClasses(const std::string& module) {
    std::vector<std::string> lines = registryLines();
    const std::vector<std::string> before = lines;
    for (const ComponentId& served : componentIds()) {
        const auto known = std::find_if(lines.begin(), lines.end(), [&](const std::string& line) {
            return line.starts_with(std::string(served.progId) + "\t");
        });
        if (known == lines.end()) {
            lines.push_back(lineOf(served, module));
        } else {
            *known = lineOf(served, module);
        }
    }
    return lines == before || writeLines(lines);
}

bool unregisterClasses(const std::string& module) {
    std::vector<std::string> lines = registryLines();
    for (const ComponentId& served : componentIds()) std::erase(lines, lineOf(served, module));
    if (!lines.empty()) return writeLines(lines);
    std::error_code error;
    fs::remove(classRegistryPath(), error);
    return !error;
}

}  // namespace velmora
