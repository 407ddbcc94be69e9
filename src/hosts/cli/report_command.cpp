// SPDX-License-Identifier: MIT
#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/headless_application.h"
#include "hosts/results/reading_results.h"
#include "hosts/results/report/report_page.h"
#include "settings/run_gate.h"
#include "settings/run_state.h"
#include "settings/settings_fields.h"

namespace velmora::cli {

namespace {

// What stands otherwise than the records of the runs tell, a line each; none without records.
std::vector<std::string> mismatchLines(const RunSettings& settings) {
    std::vector<std::string> lines;
    if (readRunRecords(settings.OutputWorkspace).none()) return lines;
    std::vector<std::pair<std::string, std::string>> texts;
    for (const SettingsField& field : settingsFields()) {
        texts.emplace_back(field.name, settingsText(settings, field));
    }
    for (const platform::Mismatch& mismatch :
         platform::verifyRecords(settings.OutputWorkspace, texts).mismatches) {
        lines.push_back(mismatch.path + ": " + mismatch.text);
    }
    return lines;
}

int refuse(HeadlessApplication& application, const std::vector<std::string>& faults) {
    for (const std::string& fault : faults) application.prompts().reason(fault);
    application.prompts().reason(
        "No report is written, since these results do not hold together. Run again what is named "
        "above, or make a draft that says so on top: velmora report --draft");
    return kFailed;
}

}  // namespace

int report(const Session& session, const ReportRequest& request) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    if (!passRunGate(application)) return kFailed;
    IPlatform& platform = application.platform();
    const RunSettings& settings = processState().settings;
    const auto reading = readingResults(platform.files(), settings.OutputWorkspace);
    const std::string path = request.file.empty()
                                 ? joinedPath(settings.OutputWorkspace, "report.html")
                                 : wholePath(request.file);
    const FeedbackScope scope(application.feedback(), "Report");
    const RunResults results =
        readResults(platform, settings, mismatchLines(settings), &application.feedback());
    if (!results.faults.empty() && !request.draft) return refuse(application, results.faults);
    std::vector<std::string> missing;
    for (const Finding& finding : results.findings) {
        if (finding.severity == Severity::error) missing.push_back(findingLine(finding));
    }
    platform.files().storeFile(path, reportPage(platform, results, &missing));
    sayDone(session, "The {} is {}: open it in a browser\n",
            results.faults.empty() ? "report" : "draft of a report", path);
    for (const std::string& fault : results.faults) application.prompts().notice(fault);
    for (const std::string& text : missing) application.prompts().reason(text);
    return missing.empty() ? kDone : kFailed;
}

}  // namespace velmora::cli
