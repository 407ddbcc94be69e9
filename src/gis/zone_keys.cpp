// SPDX-License-Identifier: MIT
#include "gis/zone_keys.h"

#include <algorithm>
#include <set>

#include "gis/text.h"

namespace velmora {

namespace {

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

std::vector<std::string> keysOf(const ITable& zones, const std::string& field) {
    std::vector<std::string> keys;
    for (std::size_t r = 0; r < zones.recordCount(); ++r) {
        keys.push_back(keyText(zones.value(r, field)));
    }
    return keys;
}

}  // namespace

bool fitsLatin1(std::string_view text) {
    // In UTF-8 the characters beyond U+00FF begin with the bytes C4 and above.
    for (std::size_t at = 0; at + 1 < text.size(); ++at) {
        if (static_cast<unsigned char>(text[at]) >= 0xC4U && continuesCharacter(text[at + 1])) {
            return false;
        }
    }
    return true;
}

ZoneKeys::ZoneKeys(const ITable& zones, const std::string& field)
    : ZoneKeys(keysOf(zones, field)) {}

ZoneKeys::ZoneKeys(const std::vector<std::string>& keys)
    : latin1_(std::ranges::all_of(keys, [](const std::string& key) { return fitsLatin1(key); })) {
    for (const std::string& key : std::set<std::string>(keys.begin(), keys.end())) {
        whole_[inTable(key)].push_back(key);
    }
}

std::string ZoneKeys::inTable(const std::string& key) const {
    std::size_t bytes = 0;
    std::size_t end = 0;
    while (end < key.size()) {
        std::size_t next = end + 1;
        while (next < key.size() && continuesCharacter(key[next])) ++next;
        bytes += latin1_ ? 1 : next - end;
        if (bytes > kZoneKeyWidth) return trimmedRight(key.substr(0, end));
        end = next;
    }
    return key;
}

std::string ZoneKeys::warning(const std::string& key) const {
    const std::string cut = inTable(key);
    const auto found = whole_.find(cut);
    std::vector<std::string> others;
    if (found != whole_.end()) {
        std::ranges::copy_if(found->second, std::back_inserter(others),
                             [&](const std::string& other) { return other != key; });
    }
    if (cut == key && others.empty()) return {};
    std::string text = "has more than " + std::to_string(kZoneKeyWidth) +
                       (latin1_ ? " characters" : " bytes in UTF-8") + ", of which tables keep \"" +
                       cut + "\"";
    if (cut == key) text = "stands in tables as it is";
    if (!others.empty()) text += ", as of " + joinedNames(others) + ": their rows look the same";
    return text;
}

}  // namespace velmora
