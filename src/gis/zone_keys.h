// SPDX-License-Identifier: MIT
// The keys of zones as zone tables hold them: at most 25 bytes. A table is written in Latin-1, one
// byte a character, when all zones have keys of its characters, else in UTF-8.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "gis/features.h"

namespace velmora {

constexpr std::size_t kZoneKeyWidth = 25;  // bytes

// Whether a text in UTF-8 has characters up to U+00FF alone. Bytes that are no UTF-8 do not count.
bool fitsLatin1(std::string_view text);

class ZoneKeys {
  public:
    // The keys of all records of the zones. Throws PlatformError when there is no such field.
    ZoneKeys(const ITable& zones, const std::string& field);
    explicit ZoneKeys(const std::vector<std::string>& keys);

    // The key as tables hold it, cut between two characters when it is too long.
    std::string inTable(const std::string& key) const;
    // What a user must know of the key, "" when it is held whole: that it is cut, and the other
    // keys that look the same then.
    std::string warning(const std::string& key) const;

  private:
    std::map<std::string, std::vector<std::string>> whole_;  // keys by their form in tables
    bool latin1_ = true;
};

}  // namespace velmora
