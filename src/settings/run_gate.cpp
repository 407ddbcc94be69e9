// SPDX-License-Identifier: MIT
#include "settings/run_gate.h"

#include "gis/errors.h"
#include "settings/lost_characters.h"
#include "settings/run_state.h"
#include "settings/stored_settings.h"

namespace velmora {

bool passRunGate(IApplication& application) {
    const IFileSystem& files = application.platform().files();
    try {
        const auto stored = storedSettings(files, application.extensionFolder());
        if (!stored) {
            application.prompts().failure(kNoSettings);
            return false;
        }
        processState().settings = *stored;
        for (const LostText& lost : lostPaths(files, *stored)) {
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
