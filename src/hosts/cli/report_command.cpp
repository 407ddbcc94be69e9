// SPDX-License-Identifier: MIT
#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/headless_application.h"
#include "hosts/cli/pdf_printing.h"
#include "hosts/results/reading_results.h"
#include "hosts/results/report/report_page.h"
#include "settings/recorded_settings.h"
#include "settings/run_gate.h"
#include "settings/run_state.h"

namespace velmora::cli {

namespace {

// What stands otherwise than the records of the runs tell, a line each; none without records.
std::vector<std::string> mismatchLines(const RunSettings& settings) {
    std::vector<std::string> lines;
    if (readRunRecords(settings.OutputWorkspace).none()) return lines;
    for (const platform::Mismatch& mismatch :
         platform::verifyRecords(settings.OutputWorkspace, settingsTexts(settings)).mismatches) {
        lines.push_back(mismatch.path + ": " + mismatch.text);
    }
    return lines;
}

std::string pathOf(const ReportRequest& request, const RunSettings& settings) {
    if (!request.file.empty()) return wholePath(request.file);
    return joinedPath(settings.OutputWorkspace, request.pdf ? "report.pdf" : "report.html");
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
    const std::string path = pathOf(request, settings);
    const std::string browser = request.pdf ? printingBrowser() : std::string();
    const FeedbackScope scope(application.feedback(), "Report");
    const RunResults results =
        readResults(platform, settings, mismatchLines(settings), &application.feedback());
    if (!results.faults.empty() && !request.draft) return refuse(application, results.faults);
    std::vector<std::string> missing;
    for (const Finding& finding : results.findings) {
        if (finding.severity == Severity::error) missing.push_back(findingLine(finding));
    }
    const std::string page = reportPage(platform, results, &missing);
    if (request.pdf) {
        printPdf(platform.files(), browser, page, path);
    } else {
        platform.files().storeFile(path, page);
    }
    sayDone(session, "The {} is {}{}\n", results.faults.empty() ? "report" : "draft of a report",
            path, request.pdf ? "" : ": open it in a browser");
    for (const std::string& fault : results.faults) application.prompts().notice(fault);
    for (const std::string& text : missing) application.prompts().reason(text);
    return missing.empty() ? kDone : kFailed;
}

}  // namespace velmora::cli
