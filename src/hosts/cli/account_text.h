// SPDX-License-Identifier: MIT
// A water account as lines of text.
#pragma once

#include <string>
#include <vector>

#include "forms/controls.h"
#include "hosts/results/account/account_annex.h"
#include "hosts/results/account/account_residuals.h"
#include "hosts/results/account/account_table.h"

namespace velmora::cli {

// The sums by zone, month, crop and kind of land, what is left over of each identity, the notes,
// and the zone tables' reading in an annex.
std::string accountText(const Account& account, const AccountUnits& units,
                        const AccountAnnex& annex);

// The rows by `keys` alone, and whether the account closes.
std::string accountText(const Account& account, const AccountUnits& units, const AccountKeys& keys);

// Comma-separated values under the names of the columns, numbers in full.
std::string accountCsv(const AccountTable& table);

}  // namespace velmora::cli
