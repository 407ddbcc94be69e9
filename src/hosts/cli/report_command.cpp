// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <memory>

#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/headless_application.h"
#include "hosts/cli/output_file.h"
#include "hosts/cli/report/report_page.h"
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
    writeOutput(path, reportPage(application.platform(), results));
    sayDone(session, "The report is {}: open it in a browser\n", path);
    return kDone;
}

}  // namespace velmora::cli
