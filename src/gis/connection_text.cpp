// SPDX-License-Identifier: MIT
#include "gis/connection_text.h"

#include <algorithm>

#include "gis/errors.h"
#include "gis/text.h"

namespace velmora {

namespace {

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string doubled(std::string_view text, char mark) {
    std::string result;
    for (const char c : text) result.append(c == mark ? 2 : 1, c);
    return result;
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

// Takes a quoted value from the front of the text, with what follows it up to the next part.
std::string takeQuoted(std::string_view& text) {
    const char mark = text.front();
    std::string value;
    for (std::size_t at = 1; at < text.size(); ++at) {
        if (text[at] != mark) {
            value += text[at];
        } else if (at + 1 < text.size() && text[at + 1] == mark) {
            value += text[at++];
        } else {
            text.remove_prefix(at + 1);
            const auto end = std::min(text.find(';'), text.size());
            if (!trimmed(text.substr(0, end)).empty()) break;
            text.remove_prefix(end);
            return value;
        }
    }
    throw PlatformError("A quoted value of the connection does not end where it should: " + value);
}

std::string takePlain(std::string_view& text) {
    const auto end = std::min(text.find(';'), text.size());
    std::string value(trimmed(text.substr(0, end)));
    text.remove_prefix(end);
    return value;
}

bool isWordCharacter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
           (static_cast<unsigned char>(c) & 0x80U) != 0;
}

// Words that a query would take for its own.
bool isWordOfQueries(std::string_view word) {
    return std::ranges::any_of(
        std::initializer_list<const char*>{"distinct", "from", "where", "and", "or", "not", "is",
                                           "null", "like", "in", "between", "as"},
        [&](const char* own) { return sameIgnoringCase(word, own); });
}

bool hasWordWhere(std::string_view text) {
    constexpr std::string_view kWord = "where";
    for (std::size_t at = 1; at + kWord.size() < text.size(); ++at) {
        if (sameIgnoringCase(text.substr(at, kWord.size()), kWord) && isBlank(text[at - 1]) &&
            isBlank(text[at + kWord.size()])) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::string connectionValue(std::string_view value) {
    const bool ordinary =
        value.empty() || (value.find(';') == std::string_view::npos && value.front() != '"' &&
                          value.front() != '\'' && trimmed(value).size() == value.size());
    return ordinary ? std::string(value) : "\"" + doubled(value, '"') + "\"";
}

std::string connectionPart(std::string_view text, std::string_view key) {
    while (!text.empty()) {
        const auto equals = std::min(text.find('='), text.find(';'));
        if (equals == std::string_view::npos) return {};
        const bool wanted = sameIgnoringCase(trimmed(text.substr(0, equals)), key);
        const bool hasValue = text[equals] == '=';
        text.remove_prefix(equals + 1);
        if (!hasValue) continue;
        while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
        const bool quoted = !text.empty() && (text.front() == '"' || text.front() == '\'');
        std::string value = quoted ? takeQuoted(text) : takePlain(text);
        if (wanted) return value;
        if (!text.empty()) text.remove_prefix(1);
    }
    return {};
}

std::string bracketedName(std::string_view name) { return "[" + doubled(name, ']') + "]"; }

std::string fieldInQuery(std::string_view field) {
    const bool word = !field.empty() && std::ranges::all_of(field, isWordCharacter) &&
                      !(field.front() >= '0' && field.front() <= '9') && !isWordOfQueries(field);
    return word ? std::string(field) : bracketedName(field);
}

std::string tableInQuery(std::string_view path) {
    const bool ordinary = path.find_first_of("[]\"'") == std::string_view::npos &&
                          !hasWordWhere(path) && trimmed(path).size() == path.size();
    return ordinary ? std::string(path) : bracketedName(path);
}

}  // namespace velmora
