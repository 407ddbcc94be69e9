// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "hosts/results/account/account_annex.h"
#include "hosts/results/account/account_residuals.h"
#include "hosts/results/account/account_table.h"

namespace velmora {

// A row for each object, under the names of the columns; null where there is no figure.
nlohmann::ordered_json rowsJson(const AccountTable& table);

// The whole account: what it is of, its units, the zones, the rows by `keys`, the sums by zone,
// crop, month and kind of land and of all, what is left over, the tables beside, and the notes.
nlohmann::ordered_json accountJson(const Account& account, const AccountKeys& keys,
                                   const AccountUnits& units, const AccountAnnex& annex);

}  // namespace velmora
