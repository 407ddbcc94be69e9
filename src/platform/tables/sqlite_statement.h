// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

#include "gis/field_value.h"
#include "platform/tables/sqlite_limits.h"

namespace velmora::platform {

// A prepared statement, which may take so much work and no more. Every failure is a PlatformError
// with the database's file and SQLite's message.
class SqliteStatement {
  public:
    SqliteStatement(sqlite3* database, const std::string& text);
    void bind(int parameter, const FieldValue& value);  // parameters count from 1
    bool step();                                        // true while there is a row
    int columnCount() const { return sqlite3_column_count(statement_.get()); }
    std::string columnName(int column) const;
    FieldValue value(int column) const;
    std::string text(int column) const;   // "" for what is no text
    long long integer(int column) const;  // 0 for what is no number

  private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    sqlite3* database_;
    std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
    WorkLimit limit_;
};

// Runs statements that give no rows, under the same limit. Throws PlatformError.
void runStatements(sqlite3* database, const std::string& statements);

}  // namespace velmora::platform
