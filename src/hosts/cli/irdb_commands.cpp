// SPDX-License-Identifier: MIT
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <system_error>

#include "forms/record_rows.h"
#include "gis/errors.h"
#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/headless_application.h"
#include "hosts/cli/table_text.h"
#include "hosts/results/time_stamp.h"
#include "irrigation/change_log.h"
#include "irrigation/irrigation_database.h"
#include "irrigation/starter_database.h"
#include "platform/platform.h"
#include "settings/run_gate.h"
#include "settings/run_state.h"

namespace velmora::cli {

namespace {

// The settings, after the run gate, or nothing after its message.
const RunSettings* gatedSettings(HeadlessApplication& application) {
    return passRunGate(application) ? &processState().settings : nullptr;
}

std::vector<std::string> valuesOf(IPlatform& platform, const std::string& path,
                                  const std::string& field) {
    std::set<std::string> values;
    const auto layer = platform.features().openFeatureClass(path);
    for (std::size_t r = 0; r < layer->recordCount(); ++r) {
        const std::string value = keyText(layer->value(r, field));
        if (!value.empty()) values.insert(value);
    }
    return {values.begin(), values.end()};
}

// Tells what the names of the land cover types are taken for, and asks of those that tell nothing.
// Without somebody who answers, and with --yes and --no, these are not irrigated.
bool takesUnknownAsIrrigated(HeadlessApplication& application, const Session& session,
                             const std::vector<std::string>& crops, bool asks) {
    const LandTypes types = landTypes(crops);
    TerminalPrompts& prompts = application.prompts();
    const auto tellList = [&](const char* what, const std::vector<std::string>& list) {
        if (!list.empty()) prompts.notice(std::string(what) + joinedNames(list));
    };
    tellList("Taken as irrigated by their names: ", types.irrigated);
    tellList("Taken as not irrigated by their names: ", types.notIrrigated);
    if (types.unknown.empty()) return false;
    const bool irrigated = asks && !session.terminal.answer &&
                           prompts.confirm("The names of " + counted(types.unknown.size(), "type") +
                                               " tell nothing (" + joinedNames(types.unknown) +
                                               "): are they irrigated?",
                                           {});
    tellList(irrigated ? "Taken as irrigated, as you say: "
                       : "Taken as not irrigated, since their names tell nothing (velmora eff set "
                         "gives them shares): ",
             types.unknown);
    return irrigated;
}

// Makes a starter database, and gives what to say of it.
std::string createStarter(HeadlessApplication& application, const Session& session,
                          const RunSettings& settings, const std::string& path, bool asks) {
    IPlatform& platform = application.platform();
    const auto zones = valuesOf(platform, settings.Zones, settings.ZoneField);
    const auto crops = valuesOf(platform, settings.LandCover, kCropField);
    const bool irrigated = takesUnknownAsIrrigated(application, session, crops, asks);
    const IrrigationDefaults defaults = starterDefaults(zones, crops, irrigated);
    createIrrigationDatabase(platform, path, defaults);
    return fmt::format(
        "{} is made: {}, default shares for {} and {} of zone and crop (national figures: table "
        "IR_Sources; replace them by your own)\n",
        path, counted(defaults.methods.size(), "method"), counted(defaults.perZone.size(), "zone"),
        counted(defaults.perZoneAndCrop.size(), "pair"));
}

// A database gives way to a new one under another name beside it, which it keeps.
void setAside(HeadlessApplication& application, const std::string& path) {
    IFileSystem& files = application.platform().files();
    const std::string stem = withoutExtension(path) + "_" + timeStamp();
    std::string kept = stem + ".mdb";
    for (int i = 2; files.fileExists(kept); ++i) kept = stem + "_" + std::to_string(i) + ".mdb";
    // The new database is another file, so that a second name keeps the old one; some file systems
    // have no second names.
    std::error_code error;
    std::filesystem::create_hard_link(path, kept, error);
    if (error) files.copyFile(path, kept);
    application.prompts().notice("The old database is kept as " + kept);
}

}  // namespace

std::string irrigationDatabaseOf(const RunSettings& settings, const EfficiencyOptions& options) {
    return options.database.empty() ? irrigationDatabasePath(settings)
                                    : wholePath(options.database);
}

int irdbCreate(const Session& session, const std::string& file, bool replace) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    const RunSettings* settings = gatedSettings(application);
    if (!settings) return kFailed;
    EfficiencyOptions named;
    named.database = file;
    const std::string path = irrigationDatabaseOf(*settings, named);
    if (application.platform().files().fileExists(path)) {
        if (platform::isAccessFile(path)) {
            throw PlatformError(path +
                                    " is a genuine Access database, which is never changed: "
                                    "give another file",
                                {.file = path});
        }
        if (!replace) {
            throw PlatformError(
                path +
                    " exists, with the shares that are filled in there: give another "
                    "file, or say --replace-database, which keeps a copy of it",
                {.file = path});
        }
        setAside(application, path);
    }
    sayDone(session, "{}", createStarter(application, session, *settings, path, true));
    return kDone;
}

int irdbInfo(const Session& session, const std::string& file) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    std::string path = wholePath(file);
    if (path.empty()) {
        const RunSettings* settings = gatedSettings(application);
        if (!settings) return kFailed;
        path = irrigationDatabasePath(*settings);
    }
    const auto connection = application.platform().connections().open(irrigationConnection(path));
    nlohmann::ordered_json info;
    info["database"] = path;
    if (platform::isAccessFile(path)) info["copy"] = platform::importedDatabase(path);
    info["tables"] = nlohmann::ordered_json::object();
    for (const std::string& table : connection->tableNames()) {
        const auto count = connection->open("SELECT count(*) AS n FROM " + quotedName(table));
        info["tables"][table] = std::get<double>(count->value("n"));
    }
    if (session.json) {
        printJson(info);
        return kDone;
    }
    print("{}\n", path);
    if (info.contains("copy")) {
        print("an Access database, which stays as it is; work goes to its copy {}\n",
              info["copy"].get<std::string>());
    }
    for (const auto& [table, rows] : info["tables"].items()) {
        print("{:>8} rows  {}\n", rows.get<double>(), oneLine(table));
    }
    return kDone;
}

int irdbChanges(const Session& session, const std::string& file, TableForm form) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    std::string path = wholePath(file);
    if (path.empty()) {
        const RunSettings* settings = gatedSettings(application);
        if (!settings) return kFailed;
        path = irrigationDatabasePath(*settings);
    }
    const IrrigationDatabase database(application.platform(), path);
    DataGrid grid("changes");
    if (database.hasTable(kChangesTable)) {
        showRows(grid, *database.query(std::string("Select * from ") + kChangesTable));
    }
    if (session.json) {
        printJson(rowsOf(grid, [](std::size_t) { return false; }));
    } else if (form == TableForm::csv) {
        printData(csvText(grid));
    } else if (grid.rowCount() == 0) {
        print("{}: no changes are noted\n", path);
    } else {
        printText(alignedText(grid));
    }
    return kDone;
}

void ensureIrrigationDatabase(const Session& session, const EfficiencyOptions& options) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    const RunSettings* settings = gatedSettings(application);
    if (!settings || settings->Zones.empty()) return;  // which the dialog tells
    const std::string path = irrigationDatabaseOf(*settings, options);
    if (application.platform().files().fileExists(path)) return;
    application.prompts().notice("There is no irrigation database " + path +
                                 ", so a starter database is made");
    tell("note: {}", createStarter(application, session, *settings, path, false));
}

}  // namespace velmora::cli
