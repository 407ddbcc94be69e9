// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "gis/tables.h"
#include "platform/tables/sqlite_connection.h"

namespace velmora::platform {

// A static cursor: the rows as they were when the query ran, in stored order. Rows of a query of
// the form "SELECT * FROM table [WHERE ...]" can be changed and added to.
class SqliteRecordset : public IRecordset {
  public:
    SqliteRecordset(SqliteConnection::Handle database, const std::string& query);

    int fieldCount() const override { return static_cast<int>(fields_.size()); }
    std::string fieldName(int position) const override;
    bool eof() const override { return at_ >= rows_.size(); }
    void moveFirst() override;
    void moveNext() override;
    FieldValue value(const std::string& field) const override;
    void setValue(const std::string& field, const FieldValue& value) override;
    void addNew() override;
    void update() override;

  private:
    struct Row {
        sqlite3_int64 id = 0;
        std::vector<FieldValue> values;
    };
    std::size_t indexOf(const std::string& field) const;
    void requireTable() const;
    void insertRow(Row& row);
    void updateRow(const Row& row);

    SqliteConnection::Handle database_;
    std::string query_;
    std::string table_;  // empty when the rows cannot be changed
    std::vector<std::string> fields_;
    std::vector<Row> rows_;
    std::size_t at_ = 0;
    bool adding_ = false;
    std::map<std::size_t, FieldValue> changes_;
};

}  // namespace velmora::platform
