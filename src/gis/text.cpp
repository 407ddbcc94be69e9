// SPDX-License-Identifier: MIT
#include "gis/text.h"

#include <algorithm>

namespace velmora {

namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::size_t lastSeparator(std::string_view path) { return path.find_last_of("/\\"); }

}  // namespace

std::string trimmedRight(std::string_view text) {
    const auto last = text.find_last_not_of(' ');
    return std::string(text.substr(0, last == std::string_view::npos ? 0 : last + 1));
}

bool sameIgnoringCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) { return lower(x) == lower(y); });
}

std::string quotedText(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string("''") : std::string(1, c);
    return quoted + "'";
}

std::string quotedName(std::string_view name) {
    std::string quoted = "\"";
    for (const char c : name) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

std::string parentFolderName(std::string_view path) {
    const auto at = lastSeparator(path);
    if (at == std::string_view::npos) return {};
    return std::string(path.substr(0, at == 0 ? 1 : at));
}

std::string fileName(std::string_view path) {
    const auto at = lastSeparator(path);
    return std::string(at == std::string_view::npos ? path : path.substr(at + 1));
}

std::string baseName(std::string_view path) { return withoutExtension(fileName(path)); }

std::string withoutExtension(std::string_view path) {
    const auto dot = path.find_last_of('.');
    const auto separator = lastSeparator(path);
    if (dot == std::string_view::npos || dot == 0) return std::string(path);
    if (separator != std::string_view::npos && dot <= separator + 1) return std::string(path);
    return std::string(path.substr(0, dot));
}

std::string withoutEnding(std::string_view path, std::string_view ending) {
    const bool has = path.size() > ending.size() &&
                     sameIgnoringCase(path.substr(path.size() - ending.size()), ending);
    return std::string(has ? path.substr(0, path.size() - ending.size()) : path);
}

std::string joinedPath(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty() && path.back() != '/' && path.back() != '\\') path += '/';
    return path += name;
}

}  // namespace velmora
