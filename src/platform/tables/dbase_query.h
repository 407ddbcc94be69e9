// SPDX-License-Identifier: MIT
// A query over one dBASE table: "SELECT columns FROM table [WHERE condition]".
#pragma once

#include <string>
#include <vector>

#include "gis/field_value.h"

namespace velmora::platform {

class DbaseQuery {
  public:
    // Throws PlatformError when the text is no such query.
    explicit DbaseQuery(const std::string& text);

    // As the query names it, without brackets.
    const std::string& table() const { return table_; }
    bool wholeRows() const { return columns_ == "*"; }
    bool wholeTable() const { return wholeRows() && condition_.empty(); }

    // The query over table "records" in SQLite, whose columns are called columnName(position of the
    // field): no name of a field is looked at as a word of the language. For whole rows its first
    // column is the record's number. Throws PlatformError for a name that is none of the fields'.
    std::string overRecords(const std::vector<Field>& fields, const std::string& path) const;
    static std::string columnName(std::size_t field) { return "field " + std::to_string(field); }

  private:
    std::string columns_;
    std::string table_;
    std::string condition_;  // behind WHERE, "" for none
};

}  // namespace velmora::platform
