// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <exception>

#include "gis/tables.h"

namespace velmora::platform {

// Rows that SQLite reads, and what kept them from being made: no exception passes through SQLite.
struct ShownRows {
    IRowSource& source;
    std::exception_ptr failure = nullptr;
};

// Shows rows of doubles to SQLite as a virtual table, so that one INSERT ... SELECT takes them in
// without a statement per row. Makes the table-valued name `name` known to the connection; `rows`
// must live as long as that name is used. A statement that fails because of the source leaves its
// failure in them.
void registerRows(sqlite3* database, const char* name, ShownRows& rows);

}  // namespace velmora::platform
