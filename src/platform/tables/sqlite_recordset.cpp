// SPDX-License-Identifier: MIT
#include "platform/tables/sqlite_recordset.h"

#include <regex>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/tables/sqlite_statement.h"

namespace velmora::platform {

namespace {

// The table of a query that shows whole rows of one table, and the rest of the query behind it.
bool isWholeRowQuery(const std::string& query, std::string& table, std::string& rest) {
    static const std::regex form(R"(\s*select\s+\*\s+from\s+(\[[^\]]+\]|"[^"]+"|\w+)(\s[\s\S]*)?)",
                                 std::regex::icase);
    std::smatch match;
    if (!std::regex_match(query, match, form)) return false;
    table = match[1];
    if (table.front() == '[' || table.front() == '"') table = table.substr(1, table.size() - 2);
    rest = match[2];
    return true;
}

}  // namespace

SqliteRecordset::SqliteRecordset(SqliteConnection::Handle database, const std::string& query)
    : database_(std::move(database)), query_(query) {
    std::string rest;
    const bool editable = isWholeRowQuery(query, table_, rest);
    SqliteStatement statement(
        database_.get(), editable ? "SELECT rowid, * FROM " + quotedName(table_) + rest : query);
    const int first = editable ? 1 : 0;
    for (int c = first; c < statement.columnCount(); ++c)
        fields_.push_back(statement.columnName(c));
    while (statement.step()) {
        Row row;
        if (editable) row.id = static_cast<sqlite3_int64>(std::get<double>(statement.value(0)));
        for (int c = first; c < statement.columnCount(); ++c)
            row.values.push_back(statement.value(c));
        rows_.push_back(std::move(row));
    }
}

std::string SqliteRecordset::fieldName(int position) const {
    return fields_.at(static_cast<std::size_t>(position));
}

void SqliteRecordset::moveFirst() {
    at_ = 0;
    changes_.clear();
    adding_ = false;
}

void SqliteRecordset::moveNext() {
    if (!eof()) ++at_;
    changes_.clear();
}

FieldValue SqliteRecordset::value(const std::string& field) const {
    const std::size_t index = indexOf(field);
    if (const auto changed = changes_.find(index); changed != changes_.end())
        return changed->second;
    if (adding_) return {};
    if (eof()) throw PlatformError("Either BOF or EOF is true: there is no current record");
    return rows_[at_].values[index];
}

void SqliteRecordset::setValue(const std::string& field, const FieldValue& value) {
    const std::size_t index = indexOf(field);
    if (!adding_ && eof())
        throw PlatformError("Either BOF or EOF is true: there is no current record");
    changes_[index] = value;
}

void SqliteRecordset::addNew() {
    requireTable();
    adding_ = true;
    changes_.clear();
}

void SqliteRecordset::update() {
    requireTable();
    if (adding_) {
        Row row;
        row.values.resize(fields_.size());
        for (const auto& [index, value] : changes_) row.values[index] = value;
        insertRow(row);
        rows_.push_back(std::move(row));
        at_ = rows_.size() - 1;
        adding_ = false;
    } else if (!changes_.empty()) {
        Row row = rows_.at(at_);
        for (const auto& [index, value] : changes_) row.values[index] = value;
        updateRow(row);
        rows_[at_] = std::move(row);
    }
    changes_.clear();
}

std::size_t SqliteRecordset::indexOf(const std::string& field) const {
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (sameIgnoringCase(fields_[i], field)) return i;
    }
    throw PlatformError("The query \"" + query_ + "\" gives no field " + field);
}

void SqliteRecordset::requireTable() const {
    if (table_.empty()) {
        throw PlatformError("The rows of \"" + query_ + "\" cannot be changed");
    }
}

void SqliteRecordset::insertRow(Row& row) {
    std::string names;
    std::string places;
    for (const std::string& field : fields_) {
        names += (names.empty() ? "" : ",") + quotedName(field);
        places += places.empty() ? "?" : ",?";
    }
    SqliteStatement statement(database_.get(), "INSERT INTO " + quotedName(table_) + "(" + names +
                                                   ") VALUES(" + places + ")");
    for (std::size_t i = 0; i < row.values.size(); ++i) {
        statement.bind(static_cast<int>(i) + 1, row.values[i]);
    }
    statement.step();
    row.id = sqlite3_last_insert_rowid(database_.get());
}

void SqliteRecordset::updateRow(const Row& row) {
    std::string assignments;
    for (const auto& [index, value] : changes_) {
        assignments += (assignments.empty() ? "" : ",") + quotedName(fields_[index]) + "=?";
    }
    SqliteStatement statement(database_.get(), "UPDATE " + quotedName(table_) + " SET " +
                                                   assignments +
                                                   " WHERE rowid=" + std::to_string(row.id));
    int parameter = 0;
    for (const auto& [index, value] : changes_) statement.bind(++parameter, value);
    statement.step();
}

}  // namespace velmora::platform
