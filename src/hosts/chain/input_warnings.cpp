// SPDX-License-Identifier: MIT
#include "hosts/chain/input_warnings.h"

#include <algorithm>
#include <exception>

#include "check/finding_groups.h"
#include "gis/text.h"
#include "settings/stored_settings.h"

namespace velmora {

namespace {

std::size_t countOf(const std::vector<Finding>& findings, Severity severity) {
    return static_cast<std::size_t>(std::ranges::count(findings, severity, &Finding::severity));
}

std::vector<Finding> withoutNotes(std::vector<Finding> findings) {
    std::erase_if(findings, [](const Finding& f) { return f.severity == Severity::note; });
    return findings;
}

}  // namespace

std::string doubtCounts(const std::vector<Finding>& findings) {
    const std::vector<Finding> doubts = withoutNotes(findings);
    const std::size_t errors = countOf(doubts, Severity::error);
    const std::size_t warnings = countOf(doubts, Severity::warning);
    const std::size_t kinds = findingGroups(doubts).size();
    std::string text;
    if (errors > 0) text = counted(errors, "error");
    if (warnings > 0) text += (text.empty() ? "" : ", ") + counted(warnings, "warning");
    if (kinds < doubts.size()) text += " of " + counted(kinds, "kind");
    return text;
}

std::string inputWarnings(IPlatform& platform, const RunSettings& settings,
                          const std::string& step) {
    try {
        CheckScope scope = inputsOfStep(step);
        scope.quick = true;
        const std::string counts = doubtCounts(checkInputs(platform, settings, scope));
        return counts.empty() ? counts : counts + " in the inputs: velmora check shows them";
    } catch (const std::exception&) {
        return {};
    } catch (const Cancelled&) {
        return {};  // the step ends at its own first beat
    }
}

void tellInputWarnings(IApplication& application, const std::string& step) {
    try {
        const auto settings =
            storedSettings(application.platform().files(), application.extensionFolder());
        if (!settings) return;
        const std::string text = inputWarnings(application.platform(), *settings, step);
        if (!text.empty()) application.prompts().notice(text);
    } catch (const std::exception&) {
        return;  // settings that cannot be read, which the run gate tells
    }
}

std::vector<Finding> doubtsOfInputs(IPlatform& platform, const RunSettings& settings,
                                    const std::string& step) {
    return withoutNotes(checkInputs(platform, settings, inputsOfStep(step)));
}

}  // namespace velmora
