// SPDX-License-Identifier: MIT
// The figures of an account as rows and columns in units, for whoever writes them down.
#pragma once

#include <string>
#include <vector>

#include "gis/field_value.h"
#include "hosts/results/account/account_groups.h"
#include "hosts/results/account/account_units.h"

namespace velmora {

enum class AccountColumnKind { text, area, volume, depth, ratio };

struct AccountColumn {
    std::string name;     // for programs, with its unit: "crop_et_acft"
    std::string heading;  // for readers, without
    AccountColumnKind kind = AccountColumnKind::text;
};

struct AccountTable {
    std::vector<AccountColumn> columns;
    std::vector<std::vector<FieldValue>> rows;  // null where there is no figure
};

// A row for each group: its keys, areas (of all land and by what it lacks), volumes, the
// efficiency, and depths over the land with crop ET. A figure of which a month lacks the grids is
// null, and so is the water requirement where no land has an efficiency.
AccountTable accountTable(const Account& account, const AccountKeys& keys,
                          const AccountUnits& units);
// The row of all land, under the same columns; its first key is "all land".
std::vector<FieldValue> totalRow(const Account& account, const AccountKeys& keys,
                                 const AccountUnits& units);

// Those of the columns whose names begin with one of `wanted`, in the order wanted; a wanted name
// ends where a unit or nothing follows.
AccountTable chosenColumns(const AccountTable& table, const std::vector<std::string>& wanted,
                           const AccountUnits& units);

// The columns that a page has room for: keys, area with crop ET, volumes and efficiency.
std::vector<std::string> pageColumns(const AccountKeys& keys);

// A figure as pages show it: 12,345.6 without the separators, "-" for none.
std::string figureText(const AccountColumn& column, const FieldValue& value);

}  // namespace velmora
