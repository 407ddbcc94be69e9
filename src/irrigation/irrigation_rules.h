// SPDX-License-Identifier: MIT
// What the efficiency step needs of an irrigation database, for whoever asks before it runs.
#pragma once

#include <string>
#include <vector>

#include "irrigation/irrigation_database.h"

namespace velmora {

// Throws PlatformError, which names table and field, for a database whose zones cannot be given
// methods, rows and efficiencies.
void requireTables(const IrrigationDatabase& database);

// What keeps zones from taking these default shares, "" for nothing.
std::string defaultSharesFault(const IrrigationDatabase& database, DefaultShares source);

// The codes among the zone's methods, or among those that it would get, whose efficiency is no
// number. Throws PlatformError.
std::vector<std::string> methodsWithoutEfficiency(const IrrigationDatabase& database,
                                                  const std::string& zone);

// Those of the crops for which no zone has a row in IREF or default shares. Throws PlatformError.
std::vector<std::string> cropsWithoutShares(const IrrigationDatabase& database,
                                            const std::vector<std::string>& zones,
                                            const std::vector<std::string>& crops);

}  // namespace velmora
