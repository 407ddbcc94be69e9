// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "gis/text.h"
#include "hosts/cli/account_text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/headless_application.h"
#include "hosts/results/account/account_json.h"
#include "hosts/results/account/account_layer.h"
#include "hosts/results/reading_results.h"
#include "settings/run_gate.h"
#include "settings/run_state.h"

namespace velmora::cli {

namespace {

AccountKeys keysOf(const std::vector<std::string>& by) {
    const auto named = [&](const char* name) { return std::ranges::find(by, name) != by.end(); };
    if (by.empty()) return {true, true, true, true};
    return {named("zone"), named("crop"), named("month"), named("land")};
}

void writeGeoPackage(IPlatform& platform, const Account& account, const AccountUnits& units,
                     const AccountAnnex& annex, const std::string& path) {
    const AccountLayer layer = accountLayer(platform, account, units, annex);
    platform::exportGeoPackage(
        path, {account.settings.Zones, account.cells.crs, layer.zoneOfPolygon, layer.zones},
        std::array<const ITable*, 3>{&layer.rows, &layer.residuals, &layer.notes});
}

// What the account is and holds, in the forms that were asked for.
void give(HeadlessApplication& application, const Session& session, const AccountRequest& request,
          const Account& account, const AccountAnnex& annex) {
    const AccountUnits& units = request.metric ? metricUnits() : usUnits();
    const AccountKeys keys = keysOf(request.by);
    if (!request.gpkgFile.empty()) {
        const std::string path = wholePath(request.gpkgFile);
        writeGeoPackage(application.platform(), account, units, annex, path);
        sayDone(session, "The account of the zones is {}\n", path);
    }
    const bool csvFile = request.csv && !request.csvFile.empty();
    if (csvFile) {
        const std::string path = wholePath(request.csvFile);
        application.platform().files().storeFile(path,
                                                 accountCsv(accountTable(account, keys, units)));
        sayDone(session, "The account is {}\n", path);
    }
    if (session.json) {
        printJson(accountJson(account, keys, units, annex));
    } else if (request.csv && !csvFile) {
        printData(accountCsv(accountTable(account, keys, units)));
    } else if (!csvFile && request.gpkgFile.empty()) {
        printText(request.by.empty() ? accountText(account, units, annex)
                                     : accountText(account, units, keys));
        if (request.by.empty()) return;  // which has the notes
    }
    for (const std::string& note : account.notes) application.prompts().notice(note);
}

}  // namespace

int account(const Session& session, const AccountRequest& request) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    if (!passRunGate(application)) return kFailed;
    const RunSettings& settings = processState().settings;
    const auto reading = readingResults(application.platform().files(), settings.OutputWorkspace);
    const FeedbackScope scope(application.feedback(), "Water account");
    const Account made = makeAccount(application.platform(), settings, application.feedback(),
                                     {.cropField = request.cropField});
    give(application, session, request, made, annexOf(application.platform(), made));
    const std::vector<std::string> open = unclosed(residualsOf(made));
    for (const std::string& text : open) application.prompts().reason(text);
    return open.empty() ? kDone : kFailed;
}

}  // namespace velmora::cli
