// SPDX-License-Identifier: MIT
#include "platform/tables/sqlite_recordset.h"

#include <algorithm>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/tables/sqlite_statement.h"
#include "platform/tables/statement_scanner.h"

namespace velmora::platform {

namespace {

// The table of a query that shows whole rows of one table, and the rest of the query behind it.
bool isWholeRowQuery(const std::string& query, std::string& table, std::string& rest) {
    StatementScanner scanner(query);
    for (const char* word : {"select", "*", "from"}) {
        const auto token = scanner.next();
        if (!token || !sameIgnoringCase(token->value, word)) return false;
    }
    const auto name = scanner.next();
    if (!name || (name->kind != TokenKind::name && name->kind != TokenKind::word)) return false;
    const auto follows = scanner.next();
    if (follows && !follows->isWord("where") && !follows->isWord("order")) return false;
    table = name->value;
    rest = query.substr(name->end);
    return true;
}

// What the rows of a table are known by: "rowid" or another word for it that is no column of the
// table, "" when there is none, as in a view.
std::string rowIdentifier(sqlite3* database, const std::string& table) {
    std::vector<std::string> names;
    SqliteStatement columns(database, "PRAGMA table_info(" + quotedName(table) + ")");
    while (columns.step()) names.push_back(columns.text(1));
    for (const char* word : {"rowid", "_rowid_", "oid"}) {
        const bool taken = std::ranges::any_of(
            names, [&](const std::string& name) { return sameIgnoringCase(name, word); });
        if (!taken &&
            sqlite3_table_column_metadata(database, "main", table.c_str(), word, nullptr, nullptr,
                                          nullptr, nullptr, nullptr) == SQLITE_OK) {
            return word;
        }
    }
    return {};
}

std::size_t bytesOf(const std::vector<FieldValue>& values) {
    std::size_t bytes = values.size() * sizeof(FieldValue);
    for (const FieldValue& value : values) {
        if (const auto* text = std::get_if<std::string>(&value)) bytes += text->size();
    }
    return bytes;
}

}  // namespace

SqliteRecordset::SqliteRecordset(SqliteConnection::Handle database, const std::string& query)
    : StaticCursor(query), database_(std::move(database)) {
    std::string rest;
    if (isWholeRowQuery(query, table_, rest)) rowId_ = rowIdentifier(database_.get(), table_);
    SqliteStatement statement(
        database_.get(),
        editable() ? "SELECT " + rowId_ + ", * FROM " + quotedName(table_) + rest : query);
    const int first = editable() ? 1 : 0;
    for (int c = first; c < statement.columnCount(); ++c) addField(statement.columnName(c));
    const std::size_t most = mostMemory(database_.get());
    std::size_t bytes = 0;
    while (statement.step()) {
        Row row;
        if (editable()) row.id = statement.integer(0);
        for (int c = first; c < statement.columnCount(); ++c)
            row.values.push_back(statement.value(c));
        bytes += sizeof(Row) + bytesOf(row.values);
        if (bytes > most) {
            throw PlatformError("The database " +
                                std::string(sqlite3_db_filename(database_.get(), "main")) + ": \"" +
                                shownStatement(query) + "\" gives more rows than fit into memory");
        }
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

void SqliteRecordset::updateRow(long long id, const Changes& changes) {
    std::string assignments;
    for (const auto& [index, value] : changes) {
        assignments += (assignments.empty() ? "" : ",") + quotedName(fields()[index]) + "=?";
    }
    SqliteStatement statement(database_.get(), "UPDATE " + quotedName(table_) + " SET " +
                                                   assignments + " WHERE " + rowId_ + "=" +
                                                   std::to_string(id));
    int parameter = 0;
    for (const auto& [index, value] : changes) statement.bind(++parameter, value);
    statement.step();
}

}  // namespace velmora::platform
