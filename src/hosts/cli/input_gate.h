// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hosts/cli/commands.h"

namespace velmora::cli {

// Tells in a line how many warnings a quick look at the inputs of a step, or of "all", finds. With
// `strict` the whole check is made, all that it finds is told, and with any warning or error the
// answer is no.
bool passInputs(const Session& session, const std::string& step, bool strict);

}  // namespace velmora::cli
