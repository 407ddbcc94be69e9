// SPDX-License-Identifier: MIT
// What is left over of each identity of an account.
#pragma once

#include <string>
#include <vector>

#include "hosts/results/account/account.h"

namespace velmora {

constexpr double kMostResidual = 1e-6;  // of what it is compared with

struct AccountResidual {
    std::string identity;
    double left = 0;  // in inches times cells, or in cells
    double of = 0;    // the total with which it is compared
    bool isArea = false;
    std::string where = {};  // of the largest one, "" for sums over everything

    double relative() const;
    bool closes() const { return relative() <= kMostResidual; }
};

// Those whose terms the account has.
std::vector<AccountResidual> residualsOf(const Account& account);

// One sentence for each identity that does not close.
std::vector<std::string> unclosed(const std::vector<AccountResidual>& residuals);

}  // namespace velmora
