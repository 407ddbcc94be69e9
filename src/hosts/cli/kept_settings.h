// SPDX-License-Identifier: MIT
// The command changes the settings through the General Settings form, which shows and stores some
// of a record differently: a PRISM run opens as a detrended and daily one. Here every field that
// nobody named stays as it was.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "forms/form.h"
#include "settings/run_settings.h"

namespace velmora::cli {

using Assignments = std::map<std::string, std::string>;  // values by the names of their fields

// The record of a settings file. Throws PlatformError naming file and field for one that no Apply
// has written.
RunSettings soundRecord(const std::string& path);

// The same of the default settings file; nothing before the first Apply.
std::optional<RunSettings> soundRecordInForce(const std::string& settingsFolder);

// The same, and the failure says what to do then.
std::optional<RunSettings> recordInForce(const std::string& settingsFolder);

// Lets the form, which has just opened or loaded the record, show it as it was stored. The flags of
// a weather table that is named are left to the form's inspection.
void showAsStored(Form& form, const RunSettings& record, const Assignments& named);

// After Apply: puts fields that nobody named back in the file where the form could not show them,
// such as an empty time step. What the file then holds.
RunSettings withFieldsPutBack(const std::string& path, const RunSettings& before,
                              const Assignments& named);

}  // namespace velmora::cli
