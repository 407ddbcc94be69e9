// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora::cli {

// Writes a file under a name beside and puts it in its place, replacing an older one, when it is
// whole. Throws PlatformError.
void writeOutput(const std::string& file, const std::string& content);

}  // namespace velmora::cli
