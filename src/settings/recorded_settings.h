// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "settings/run_settings.h"

namespace velmora {

// Settings as texts, field and value, as the record of a run holds them.
using SettingsTexts = std::vector<std::pair<std::string, std::string>>;

// All fields in the order of the record.
SettingsTexts settingsTexts(const RunSettings& settings);

// The way back. Fields that are not known are passed over. Throws PlatformError, naming the field,
// for a text that is no value of it.
RunSettings recordedRunSettings(const SettingsTexts& texts);

}  // namespace velmora
