// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/tables/sqlite_connection.h"
#include "platform/tables/static_cursor.h"

namespace velmora::platform {

// The rows of a query in stored order. Rows of a query of the form "SELECT * FROM table [WHERE
// ...]" can be changed and added to when it is a table and no view. Throws PlatformError, also for
// rows without end.
class SqliteRecordset : public StaticCursor {
  public:
    SqliteRecordset(SqliteConnection::Handle database, const std::string& query);

  protected:
    bool editable() const override { return !rowId_.empty(); }
    void insertRow(Row& row) override;
    void updateRow(long long id, const Changes& changes) override;

  private:
    SqliteConnection::Handle database_;
    std::string table_;  // of a query for whole rows
    std::string rowId_;  // the name of its row numbers, empty when the rows cannot be changed
};

}  // namespace velmora::platform
