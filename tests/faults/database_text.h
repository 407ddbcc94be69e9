// SPDX-License-Identifier: MIT
// A database as text: every table with its rows in a fixed order.
#pragma once

#include <map>
#include <string>

#include "tests/faults/contents.h"

namespace velmora::faults {

struct DatabaseText {
    bool whole = false;                         // it opens, and SQLite finds nothing wrong in it
    std::map<std::string, std::string> tables;  // by name

    bool operator==(const DatabaseText&) const = default;
};

// Opens a copy, with the journal that a killed program may have left beside it, in `folder`.
DatabaseText databaseText(const std::string& path, const Contents& all, const std::string& folder);

}  // namespace velmora::faults
