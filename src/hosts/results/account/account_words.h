// SPDX-License-Identifier: MIT
// What an account says of itself, the same in a terminal and on a page.
#pragma once

#include <string>

#include "hosts/results/account/account.h"
#include "hosts/results/account/account_residuals.h"
#include "hosts/results/account/account_units.h"

namespace velmora {

// "Apr to Oct 2023" of the months that are in the account.
std::string accountPeriod(const Account& account);
// Of which cells it is, and how its figures are made from the grids.
std::string accountBasis(const Account& account, const AccountUnits& units);
// What its columns mean.
std::string accountMeaning();
// What is left over, in the account's units, and of its total: "1.2e-07 acre-feet", "3.4e-09".
std::string residualText(const Account& account, const AccountResidual& residual,
                         const AccountUnits& units);
std::string relativeText(const AccountResidual& residual);

}  // namespace velmora
