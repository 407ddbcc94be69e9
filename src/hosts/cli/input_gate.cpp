// SPDX-License-Identifier: MIT
#include "hosts/cli/input_gate.h"

#include <optional>

#include "check/finding_groups.h"
#include "gis/errors.h"
#include "hosts/chain/input_warnings.h"
#include "hosts/cli/console.h"
#include "hosts/cli/failure.h"
#include "platform/platform.h"
#include "settings/stored_settings.h"

namespace velmora::cli {

namespace {

// Nothing where there are none, or none that can be read, which the steps tell.
std::optional<RunSettings> settingsOf(platform::Platform& platform, const Session& session) {
    try {
        return storedSettings(platform.files(), session.settingsFolder);
    } catch (const PlatformError&) {
        return std::nullopt;
    }
}

}  // namespace

bool passInputs(const Session& session, const std::string& step, bool strict) {
    platform::Platform platform;
    const auto settings = settingsOf(platform, session);
    if (!settings) return true;
    if (!strict) {
        const std::string warnings = inputWarnings(platform, *settings, step);
        if (!warnings.empty()) tellOf("note", warnings);
        return true;
    }
    const std::vector<Finding> doubts = doubtsOfInputs(platform, *settings, step);
    if (doubts.empty()) return true;
    for (const std::string& line : findingLines(doubts)) tellOf("note", line);
    tellFailure(doubtCounts(doubts) + " in the inputs, so that --strict lets nothing run", {},
                session.json);
    return false;
}

}  // namespace velmora::cli
