// SPDX-License-Identifier: MIT
#include "shell/class_registry.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include "shell/component_server.h"

namespace velmora {

namespace fs = std::filesystem;

namespace {

std::string lineOf(const ComponentClass& served, const std::string& module) {
    return served.progId + "\t" + guidText(served.clsid) + "\t" + module;
}

std::vector<std::string> readLines() {
    std::vector<std::string> lines;
    std::ifstream file(classRegistryPath());
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
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

std::string classRegistryPath() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    if (config && *config) return std::string(config) + "/velmora/classes.txt";
    const char* home = std::getenv("HOME");
    return std::string(home ? home : "") + "/.config/velmora/classes.txt";
}

std::optional<RegisteredClass> findRegisteredClass(const std::string& progId) {
    for (const std::string& line : readLines()) {
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

bool registerClasses(const std::string& module) {
    std::vector<std::string> lines = readLines();
    const std::vector<std::string> before = lines;
    for (const ComponentClass& served : componentClasses()) {
        const auto known = std::find_if(lines.begin(), lines.end(), [&](const std::string& line) {
            return line.starts_with(served.progId + "\t");
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
    std::vector<std::string> lines = readLines();
    for (const ComponentClass& served : componentClasses())
        std::erase(lines, lineOf(served, module));
    if (!lines.empty()) return writeLines(lines);
    std::error_code error;
    fs::remove(classRegistryPath(), error);
    return !error;
}

}  // namespace velmora
