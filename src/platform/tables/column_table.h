// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include "gis/tables.h"

namespace velmora::platform {

// Shows columns of doubles to SQLite as a virtual table, so that one INSERT ... SELECT takes them
// in without a statement per row. Makes the table-valued name `name` known to the connection;
// `source` must live as long as that name is used.
void registerColumnTable(sqlite3* database, const char* name, const IColumnSource& source);

}  // namespace velmora::platform
