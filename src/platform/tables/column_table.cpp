// SPDX-License-Identifier: MIT
#include "platform/tables/column_table.h"

#include <string>

#include "gis/errors.h"

namespace velmora::platform {

namespace {

// The structures that SQLite hands around; the base member stands first, as its interface asks.
struct Table {
    sqlite3_vtab base;
    const IColumnSource* source;
};
struct Cursor {
    sqlite3_vtab_cursor base;
    std::vector<const double*> columns;
    std::size_t row;
    std::size_t rows;
};

int connectTable(sqlite3* database, void* aux, int, const char* const*, sqlite3_vtab** table,
                 char**) {
    const auto* source = static_cast<const IColumnSource*>(aux);
    std::string declaration = "CREATE TABLE x(";
    for (int c = 0; c < source->columnCount(); ++c) {
        declaration += (c ? ",c" : "c") + std::to_string(c) + " REAL";
    }
    declaration += ")";
    const int status = sqlite3_declare_vtab(database, declaration.c_str());
    if (status != SQLITE_OK) return status;
    auto* made = new Table{};
    made->source = source;
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
    const IColumnSource& source = *reinterpret_cast<Table*>(table)->source;
    for (int c = 0; c < source.columnCount(); ++c) {
        const auto values = source.column(c);
        made->columns.push_back(values.empty() ? nullptr : values.data());
    }
    made->rows = source.rowCount();
    *cursor = &made->base;
    return SQLITE_OK;
}

Cursor* cursorOf(sqlite3_vtab_cursor* cursor) { return reinterpret_cast<Cursor*>(cursor); }

int closeCursor(sqlite3_vtab_cursor* cursor) {
    delete cursorOf(cursor);
    return SQLITE_OK;
}

int filter(sqlite3_vtab_cursor* cursor, int, const char*, int, sqlite3_value**) {
    cursorOf(cursor)->row = 0;
    return SQLITE_OK;
}

int nextRow(sqlite3_vtab_cursor* cursor) {
    ++cursorOf(cursor)->row;
    return SQLITE_OK;
}

int atEnd(sqlite3_vtab_cursor* cursor) {
    return cursorOf(cursor)->row >= cursorOf(cursor)->rows ? 1 : 0;
}

int column(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int index) {
    const Cursor& at = *cursorOf(cursor);
    const double* values = at.columns[static_cast<std::size_t>(index)];
    if (values && values[at.row] == values[at.row]) {
        sqlite3_result_double(context, values[at.row]);
    }
    return SQLITE_OK;  // no result is null
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

void registerColumnTable(sqlite3* database, const char* name, const IColumnSource& source) {
    // SQLite hands the pointer back to connectTable, which only reads through it.
    void* aux = const_cast<IColumnSource*>(&source);
    if (sqlite3_create_module(database, name, &kModule, aux) != SQLITE_OK) {
        throw PlatformError(std::string("SQLite: ") + sqlite3_errmsg(database));
    }
}

}  // namespace velmora::platform
