// SPDX-License-Identifier: MIT
// The work database: a database file with the table "GGG", the durable image of the cell table.
#pragma once

#include <string>

#include "gis/application.h"
#include "gis/tables.h"

namespace velmora {

// Deletes PATH.mdb and creates it anew with an empty table "GGG". Throws PlatformError.
void createWorkDatabase(IPlatform& platform, const std::string& pathWithoutExtension);

// Deletes PATH.mdb. Throws PlatformError.
void removeWorkDatabase(IPlatform& platform, const std::string& pathWithoutExtension);

// Puts the cell table's records into PATH.mdb in one step: the file is written beside and takes the
// name when it is whole.
void storeWorkDatabase(IPlatform& platform, const std::string& pathWithoutExtension,
                       IRowSource& records);

}  // namespace velmora
