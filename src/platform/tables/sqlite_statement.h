// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

#include "gis/field_value.h"

namespace velmora::platform {

// A prepared statement. Every failure is a PlatformError with SQLite's message.
class SqliteStatement {
  public:
    SqliteStatement(sqlite3* database, const std::string& text);
    void bind(int parameter, const FieldValue& value);  // parameters count from 1
    bool step();                                        // true while there is a row
    int columnCount() const { return sqlite3_column_count(statement_.get()); }
    std::string columnName(int column) const;
    FieldValue value(int column) const;

  private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    sqlite3* database_;
    std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
};

}  // namespace velmora::platform
