// SPDX-License-Identifier: MIT
// The settings file: one RunSettings record, field after field in the record's order, without
// header, padding or end mark, little-endian. A text is a 16-bit count of bytes and the bytes in
// Windows-1252; a number is an IEEE binary64; a flag is a 16-bit -1 or 0.
#pragma once

#include <string>
#include <string_view>

#include "gis/files.h"
#include "settings/run_settings.h"

namespace velmora {

// "Zav.inf" in the extension's folder. Settings exist exactly when this file does.
std::string defaultSettingsPath(const std::string& extensionFolder);

// Throws PlatformError for a text of more than 65535 bytes, naming the field.
std::string settingsRecord(const RunSettings& settings);

// Reads one record from the beginning of `bytes`; what follows is ignored. Throws PlatformError
// naming the field in which the bytes end.
RunSettings parseSettingsRecord(std::string_view bytes);

// Throws PlatformError naming the first field with a value that no Apply stores and that the
// General Settings form cannot show, such as the method "9".
void requireRestorable(const RunSettings& settings);

// Writes from byte 0 without truncating: the tail of a longer old record stays.
void writeSettings(IFileSystem& files, const std::string& path, const RunSettings& settings);
RunSettings readSettings(const IFileSystem& files, const std::string& path);

}  // namespace velmora
