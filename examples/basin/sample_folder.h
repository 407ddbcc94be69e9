// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora::examples {

// Makes the folder of a sample basin, and marks it as one. Throws PlatformError for a folder that
// holds anything and does not carry the mark, which names its place: a copy of a sample, made to
// work on, is its user's own.
void claimSampleFolder(const std::string& folder);

}  // namespace velmora::examples
