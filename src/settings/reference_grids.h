// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora {

// The path of a month's reference precipitation grid: the path of any one month's, its last two
// characters replaced by the month's two digits. Throws PlatformError for a path of fewer
// characters.
std::string prismGridPath(const std::string& path, int month);

}  // namespace velmora
