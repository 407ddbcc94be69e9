// SPDX-License-Identifier: MIT
#include "settings/stored_settings.h"

#include <utility>

#include "gis/errors.h"
#include "settings/settings_file.h"

namespace velmora {

std::optional<RunSettings> storedSettings(const IFileSystem& files,
                                          const std::string& extensionFolder) {
    const std::string path = defaultSettingsPath(extensionFolder);
    if (!files.fileExists(path)) return std::nullopt;
    return readSettings(files, path);
}

RunSettings requiredSettings(const IFileSystem& files, const std::string& extensionFolder) {
    auto settings = storedSettings(files, extensionFolder);
    if (!settings) throw PlatformError(kNoSettings);
    return *std::move(settings);
}

}  // namespace velmora
