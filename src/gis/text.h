// SPDX-License-Identifier: MIT
// Small services over texts and paths.
#pragma once

#include <concepts>
#include <string>
#include <string_view>

namespace velmora {

std::string trimmedRight(std::string_view text);
bool sameIgnoringCase(std::string_view a, std::string_view b);  // ASCII letters only

// A list of names as messages show it: "a, b, c".
template <class Range>
std::string joinedNames(const Range& names) {
    std::string text;
    for (const auto& name : names) {
        if (!text.empty()) text += ", ";
        text += name;
    }
    return text;
}

// "1 error", "2 errors".
inline std::string counted(std::integral auto count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// A text as a literal of a statement: in single quotes, those inside it doubled.
std::string quotedText(std::string_view text);
// The name of a table or column as an identifier in a statement.
std::string quotedName(std::string_view name);

// Paths. Both separators of the desktop's systems are understood when a path is taken apart.
std::string parentFolderName(std::string_view path);  // "" when there is none
std::string fileName(std::string_view path);
std::string baseName(std::string_view path);  // the file name without its extension
std::string withoutExtension(std::string_view path);
// Without an ending such as ".dbf", in capitals or not, when the path has it.
std::string withoutEnding(std::string_view path, std::string_view ending);
std::string joinedPath(std::string_view folder, std::string_view name);

}  // namespace velmora
