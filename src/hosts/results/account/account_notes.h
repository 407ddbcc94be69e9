// SPDX-License-Identifier: MIT
#pragma once

#include "hosts/results/account/account.h"

namespace velmora {

// Adds what the reader of an account must know: `ofGrids`, each once; grids that are old; zones
// without a cell; whose net requirement has no efficiency, and which crops no coefficient.
void addNotes(IPlatform& platform, const std::vector<std::string>& ofGrids, Account& account);

}  // namespace velmora
