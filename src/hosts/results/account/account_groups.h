// SPDX-License-Identifier: MIT
// The entries of an account, summed by what a reader asks for.
#pragma once

#include <optional>
#include <vector>

#include "hosts/results/account/account.h"

namespace velmora {

struct AccountKeys {
    bool zone = false;
    bool crop = false;
    bool month = false;
    bool land = false;
};

// One group. Places are those of the account's lists; what is no key is not set.
struct AccountGroup {
    std::optional<std::size_t> zone;
    std::optional<std::size_t> crop;
    std::optional<std::size_t> month;
    std::optional<Land> land;
    AmountsByLand amounts = {};
    // Of a month; of the whole period by the least that a cell lacks in any month.
    std::array<double, kLands> cells = {};

    double allCells() const;
    double cellsWithCropEt() const;
    Amounts sum() const;  // of all kinds of land
    // False where all land that has a net requirement lacks an efficiency.
    bool knowsWater() const;
};

// The groups that have cells, zone by zone (land outside all zones last), crop by crop (land
// without land cover last), month by month, kind by kind. By zones without crops or kinds of land
// also the zones without a cell.
std::vector<AccountGroup> groupsOf(const Account& account, const AccountKeys& keys);

// All land and months.
AccountGroup totalOf(const Account& account);

}  // namespace velmora
