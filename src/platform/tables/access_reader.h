// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/tables/sqlite_connection.h"

namespace velmora::platform {

// Copies all tables of the user from an Access file into an open SQLite database. Texts become
// VARCHAR(n) or TEXT that compare without regard to case, dates texts like "2006-07-31 00:00:00",
// yes/no values 1 and 0; whole numbers, singles, doubles and currency numbers; binary data blobs.
// Throws PlatformError when the file is damaged. A damaged file may also end the process: see
// importedDatabase().
void copyAccessTables(const std::string& path, sqlite3* database);

}  // namespace velmora::platform
