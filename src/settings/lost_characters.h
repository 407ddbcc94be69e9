// SPDX-License-Identifier: MIT
// Settings files hold texts in Windows-1252. A path with other characters is stored with "?" in
// their place and then names another file: the user is told when that happens and when such a path
// is met later.
#pragma once

#include <string>
#include <vector>

#include "gis/files.h"
#include "settings/run_settings.h"

namespace velmora {

struct LostText {
    std::string field;  // name of the setting
    std::string text;   // what is lost and what to do
};

// The texts that a settings file cannot hold.
std::vector<LostText> textsToBeLost(const RunSettings& settings);

// Paths of a stored record that hold a "?" and name nothing.
std::vector<LostText> lostPaths(const IFileSystem& files, const RunSettings& settings);

}  // namespace velmora
