// SPDX-License-Identifier: MIT
// Filling in a zone without losing what its user has entered: the dialog overwrites the shares of a
// zone that is chosen, which a script would do without anybody seeing it.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "irrigation/irrigation_database.h"

namespace velmora {

struct ZoneFilling {
    std::optional<double> cvef;             // of all rows; unset: rows keep theirs, new ones get 1
    std::optional<DefaultShares> defaults;  // which default shares rows take, if any
    bool overwrite = false;                 // rows with shares, or not irrigated, take them too
};

struct FilledZone {
    std::size_t rows = 0;
    std::size_t withEfficiency = 0;
    std::size_t kept = 0;                      // rows that default shares were not given to
    std::vector<std::string> withoutDefaults;  // crops for which the default tables have no row
};

// Gives the zone a method list, a row for each of the crops, the default shares that are asked for,
// and its efficiencies. A row that has shares keeps them, and one that is declared not irrigated
// stays so, unless `overwrite` is set. Throws PlatformError, as the parts of IrrigationDatabase do.
FilledZone fillZone(IrrigationDatabase& database, const std::string& zone,
                    const std::vector<std::string>& crops, const ZoneFilling& filling,
                    const std::function<void()>& onBadEfficiency);

// A row of table IREF is declared not irrigated by its column NotIrrigated, or as older versions
// did it by an efficiency of 0 beside shares of 0; without an efficiency it only has no shares yet.
bool isDeclaredNotIrrigated(const IRecordset& row, const std::vector<std::string>& methods);

// The sum of the row's shares.
double sumOfShares(const IRecordset& row, const std::vector<std::string>& methods);

}  // namespace velmora
