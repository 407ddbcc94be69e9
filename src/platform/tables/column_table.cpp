// SPDX-License-Identifier: MIT
#include "platform/tables/column_table.h"

#include <string>

#include "gis/errors.h"

namespace velmora::platform {

namespace {

// The structures that SQLite hands around; the base member stands first, as its interface asks.
struct Table {
    sqlite3_vtab base;
    ShownRows* rows;
};
struct Cursor {
    sqlite3_vtab_cursor base;
    ShownRows* rows;
    std::vector<const double*> columns;  // of the rows at hand
    std::size_t first;                   // of those
    std::size_t end;
    std::size_t row;
};

int connectTable(sqlite3* database, void* aux, int, const char* const*, sqlite3_vtab** table,
                 char**) {
    auto* rows = static_cast<ShownRows*>(aux);
    std::string declaration = "CREATE TABLE x(";
    for (int c = 0; c < rows->source.columnCount(); ++c) {
        declaration += (c ? ",c" : "c") + std::to_string(c) + " REAL";
    }
    declaration += ")";
    const int status = sqlite3_declare_vtab(database, declaration.c_str());
    if (status != SQLITE_OK) return status;
    auto* made = new Table{};
    made->rows = rows;
    *table = &made->base;
    return SQLITE_OK;
}

int disconnectTable(sqlite3_vtab* table) {
    delete reinterpret_cast<Table*>(table);
    return SQLITE_OK;
}

int bestIndex(sqlite3_vtab*, sqlite3_index_info* info) {
    info->estimatedCost = 1e6;
    return SQLITE_OK;
}

int openCursor(sqlite3_vtab* table, sqlite3_vtab_cursor** cursor) {
    auto* made = new Cursor{};
    made->rows = reinterpret_cast<Table*>(table)->rows;
    *cursor = &made->base;
    return SQLITE_OK;
}

Cursor* cursorOf(sqlite3_vtab_cursor* cursor) { return reinterpret_cast<Cursor*>(cursor); }

int closeCursor(sqlite3_vtab_cursor* cursor) {
    delete cursorOf(cursor);
    return SQLITE_OK;
}

// Goes on to the row, which may be behind the last.
int moveTo(Cursor& cursor, std::size_t row) {
    cursor.row = row;
    IRowSource& source = cursor.rows->source;
    if (row < cursor.end || row >= source.rowCount()) return SQLITE_OK;
    try {
        cursor.first = row;
        cursor.end = row + source.next(row);
        cursor.columns.clear();
        for (int c = 0; c < source.columnCount(); ++c) {
            const auto values = source.column(c);
            cursor.columns.push_back(values.empty() ? nullptr : values.data());
        }
        return SQLITE_OK;
    } catch (...) {
        cursor.rows->failure = std::current_exception();
        return SQLITE_ERROR;
    }
}

int filter(sqlite3_vtab_cursor* cursor, int, const char*, int, sqlite3_value**) {
    cursorOf(cursor)->end = 0;
    return moveTo(*cursorOf(cursor), 0);
}

int nextRow(sqlite3_vtab_cursor* cursor) {
    return moveTo(*cursorOf(cursor), cursorOf(cursor)->row + 1);
}

int atEnd(sqlite3_vtab_cursor* cursor) {
    return cursorOf(cursor)->row >= cursorOf(cursor)->rows->source.rowCount() ? 1 : 0;
}

int column(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int index) {
    const Cursor& at = *cursorOf(cursor);
    const double* values = at.columns[static_cast<std::size_t>(index)];
    if (!values) return SQLITE_OK;  // no result is null
    const double value = values[at.row - at.first];
    if (value == value) sqlite3_result_double(context, value);
    return SQLITE_OK;
}

int rowid(sqlite3_vtab_cursor* cursor, sqlite3_int64* id) {
    *id = static_cast<sqlite3_int64>(cursorOf(cursor)->row) + 1;
    return SQLITE_OK;
}

const sqlite3_module kModule = [] {
    sqlite3_module module{};
    module.xConnect = connectTable;
    module.xBestIndex = bestIndex;
    module.xDisconnect = disconnectTable;
    module.xDestroy = disconnectTable;
    module.xOpen = openCursor;
    module.xClose = closeCursor;
    module.xFilter = filter;
    module.xNext = nextRow;
    module.xEof = atEnd;
    module.xColumn = column;
    module.xRowid = rowid;
    return module;
}();

}  // namespace

void registerRows(sqlite3* database, const char* name, ShownRows& rows) {
    if (sqlite3_create_module(database, name, &kModule, &rows) != SQLITE_OK) {
        throw PlatformError(std::string("SQLite: ") + sqlite3_errmsg(database));
    }
}

}  // namespace velmora::platform
