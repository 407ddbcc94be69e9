// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "settings/run_settings.h"

namespace velmora {

// Settings as texts, field and value, as the record of a run holds them. Fields that are not known
// are passed over. Throws PlatformError, naming the field, for a text that is no value of it.
RunSettings recordedRunSettings(const std::vector<std::pair<std::string, std::string>>& texts);

}  // namespace velmora
