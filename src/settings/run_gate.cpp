// SPDX-License-Identifier: MIT
#include "settings/run_gate.h"

#include "gis/errors.h"
#include "settings/lost_characters.h"
#include "settings/run_state.h"
#include "settings/settings_file.h"

namespace velmora {

bool passRunGate(IApplication& application) {
    const IFileSystem& files = application.platform().files();
    const std::string path = defaultSettingsPath(application.extensionFolder());
    if (!files.fileExists(path)) {
        application.prompts().failure("Run Settings First,Please!");
        return false;
    }
    try {
        RunSettings& settings = processState().settings;
        settings = readSettings(files, path);
        for (const LostText& lost : lostPaths(files, settings)) {
            application.prompts().notice(lost.field + ": " + lost.text);
        }
        return true;
    } catch (const PlatformError& e) {
        application.prompts().failure(std::string(e.what()) +
                                      ": apply the settings again, or delete the file");
        return false;
    }
}

}  // namespace velmora
