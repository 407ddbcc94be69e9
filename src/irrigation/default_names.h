// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora {

// The crop under which the default shares stand, for a crop type of the land cover. Names compare
// with case; one that is not listed stands for itself.
std::string MatchCrop(const std::string& landCoverName);

// The key under which a zone's default shares stand: its own. The one place where zone keys would
// be translated.
std::string MatchCounty(const std::string& zone);

}  // namespace velmora
