// SPDX-License-Identifier: MIT
// A dBASE table, read plainly and strictly.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace velmora::faults {

struct DbaseText {
    bool whole = false;                             // the sizes are those that the header tells
    std::vector<std::string> fields;                // name, type, width and decimals of each
    std::vector<std::vector<std::string>> records;  // the mark of deletion, then each field's bytes
};

DbaseText dbaseText(const std::string& bytes);

// Whether both tables are whole and the same but for the fields of these names, which may be in one
// of them alone.
bool sameBut(const std::set<std::string>& names, const std::string& a, const std::string& b);

// Whether a table is whole and holds records of another one in their order, some or all.
bool holdsRecordsOf(const std::string& bytes, const std::string& of);

}  // namespace velmora::faults
