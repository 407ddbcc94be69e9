// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <memory>

#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/headless_application.h"
#include "hosts/results/report/report_page.h"
#include "settings/run_gate.h"
#include "settings/run_state.h"

namespace velmora::cli {

int report(const Session& session, const std::string& file) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    if (!passRunGate(application)) return kFailed;
    const RunSettings& settings = processState().settings;
    // No run changes the results meanwhile; nor does one where nothing can be written.
    std::unique_ptr<IFolderLock> reading;
    if (::access(settings.OutputWorkspace.c_str(), W_OK) == 0) {
        reading = application.platform().files().shareFolder(settings.OutputWorkspace);
    }
    const std::string path =
        file.empty() ? joinedPath(settings.OutputWorkspace, "report.html") : wholePath(file);
    const RunResults results = readResults(application.platform(), settings);
    std::vector<std::string> missing;
    for (const Finding& finding : results.findings) {
        if (finding.severity == Severity::error) missing.push_back(findingLine(finding));
    }
    application.platform().files().storeFile(path,
                                             reportPage(application.platform(), results, &missing));
    sayDone(session, "The report is {}: open it in a browser\n", path);
    for (const std::string& text : missing) application.prompts().reason(text);
    return missing.empty() ? kDone : kFailed;
}

}  // namespace velmora::cli
