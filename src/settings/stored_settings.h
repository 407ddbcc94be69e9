// SPDX-License-Identifier: MIT
// The settings in force: the record of the default settings file.
#pragma once

#include <optional>
#include <string>

#include "gis/files.h"
#include "settings/run_settings.h"

namespace velmora {

// What is said where there are none.
constexpr const char* kNoSettings = "Run Settings First,Please!";

// Nothing before the first Apply. Throws PlatformError naming file and field for a file that cannot
// be read.
std::optional<RunSettings> storedSettings(const IFileSystem& files,
                                          const std::string& extensionFolder);

// The same where nothing can be done without. Throws PlatformError with kNoSettings, too.
RunSettings requiredSettings(const IFileSystem& files, const std::string& extensionFolder);

}  // namespace velmora
