// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hosts/results/account/account_annex.h"
#include "hosts/results/account/account_residuals.h"
#include "hosts/results/account/account_units.h"

namespace velmora {

// The account as a section of a page, from its <h2 id="account"> on: sums by zone, month, crop and
// kind of land, what is left over of each identity, the notes, and the zone tables' reading in an
// annex. Classes and elements are those of the report.
std::string accountSection(const Account& account, const AccountAnnex& annex,
                           const AccountUnits& units = usUnits());

}  // namespace velmora
