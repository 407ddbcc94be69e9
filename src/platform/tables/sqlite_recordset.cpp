// SPDX-License-Identifier: MIT
#include "platform/tables/sqlite_recordset.h"

#include <regex>

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
    : StaticCursor(query), database_(std::move(database)) {
    std::string rest;
    const bool wholeRows = isWholeRowQuery(query, table_, rest);
    SqliteStatement statement(
        database_.get(), wholeRows ? "SELECT rowid, * FROM " + quotedName(table_) + rest : query);
    const int first = wholeRows ? 1 : 0;
    for (int c = first; c < statement.columnCount(); ++c) addField(statement.columnName(c));
    while (statement.step()) {
        Row row;
        if (wholeRows) row.id = static_cast<long long>(std::get<double>(statement.value(0)));
        for (int c = first; c < statement.columnCount(); ++c)
            row.values.push_back(statement.value(c));
        addRow(std::move(row));
    }
}

void SqliteRecordset::insertRow(Row& row) {
    std::string names;
    std::string places;
    for (const std::string& field : fields()) {
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

void SqliteRecordset::updateRow(const Row& row, const Changes& changes) {
    std::string assignments;
    for (const auto& [index, value] : changes) {
        assignments += (assignments.empty() ? "" : ",") + quotedName(fields()[index]) + "=?";
    }
    SqliteStatement statement(database_.get(), "UPDATE " + quotedName(table_) + " SET " +
                                                   assignments +
                                                   " WHERE rowid=" + std::to_string(row.id));
    int parameter = 0;
    for (const auto& [index, value] : changes) statement.bind(++parameter, value);
    statement.step();
}

}  // namespace velmora::platform
