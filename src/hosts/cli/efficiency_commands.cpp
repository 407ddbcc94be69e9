// SPDX-License-Identifier: MIT
#include <fmt/core.h>

#include <algorithm>
#include <functional>
#include <set>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "gis/record_rows.h"
#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/grid_statistics.h"
#include "hosts/cli/grid_text.h"
#include "hosts/cli/headless_application.h"
#include "irrigation/crop_summary.h"
#include "irrigation/frm_efficiency.h"
#include "irrigation/starter_database.h"
#include "platform/tables/access_import.h"
#include "settings/run_gate.h"
#include "settings/run_state.h"
#include "settings/settings_file.h"

namespace velmora::cli {

namespace {

constexpr const char* kDefaultsQuestion = "Add default IR percentage?";

// The dialog's questions as the options answer them; the others go to the terminal.
std::optional<bool> answerTo(const std::string& question, const EfficiencyOptions& options) {
    if (question != kDefaultsQuestion) return options.replaceTables;
    if (options.defaultShares.empty()) return std::nullopt;
    return options.defaultShares == "zone";
}

// A failure whose message has a fixed text gets its reason behind it.
void tellReason(const Form& form) {
    const auto* dialog = dynamic_cast<const frmEfficiency*>(&form);
    if (dialog && !dialog->reason().empty()) fmt::print("reason: {}\n", oneLine(dialog->reason()));
}

bool failed(const Form& form) { return dynamic_cast<const TrappedForm&>(form).failed(); }

// Applies the database, answering that its tables stay unless the options say otherwise.
bool apply(Form& form, const EfficiencyOptions& options) {
    if (!options.database.empty()) {
        form.control<TextBox>("txtIRDB").enter(wholePath(options.database));
    }
    form.control<CommandButton>("cmdApplyIRDB").click();
    if (failed(form)) tellReason(form);
    return !failed(form);
}

// The zones of the list, each once.
std::vector<std::string> zonesOf(const ListBox& list) {
    std::vector<std::string> zones;
    std::set<std::string> seen = {"", "None"};
    for (const std::string& zone : list.items()) {
        if (seen.insert(zone).second) zones.push_back(zone);
    }
    return zones;
}

// Chooses one zone after the other. False at the first that fails.
bool fillZones(Form& form, const EfficiencyOptions& options,
               const std::vector<std::string>& zones) {
    if (!options.cvef.empty()) form.control<TextBox>("txtCvef").enter(options.cvef);
    auto& list = form.control<ListBox>("cmbZone");
    for (const std::string& zone : zones) {
        if (std::ranges::find(list.items(), zone) == list.items().end()) {
            throw PlatformError("There is no zone \"" + zone + "\": choose one of " +
                                joinedNames(zonesOf(list)));
        }
        list.setText(zone);
        if (failed(form)) return false;
    }
    return true;
}

// Opens the dialog behind the run gate and lets `use` work with it; 1 when it refused something.
int withDialog(const Session& session, const EfficiencyOptions& options,
               const std::function<void(frmEfficiency&)>& use) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    frmEfficiency form(application);
    form.load();
    if (!form.isOpen()) return kFailed;
    EfficiencyOptions answers = options;
    answers.replaceTables = options.replaceTables.value_or(session.terminal.answer.value_or(false));
    application.prompts().script = [&](const std::string& question) {
        return answerTo(question, answers);
    };
    if (apply(form, options)) use(form);
    const bool failure = form.failed();
    form.close();
    return failure ? kFailed : kDone;
}

// The settings, after the run gate, or nothing after its message.
const RunSettings* gatedSettings(HeadlessApplication& application) {
    return passRunGate(application) ? &processState().settings : nullptr;
}

std::string databaseOf(const RunSettings& settings, const EfficiencyOptions& options) {
    return options.database.empty() ? irrigationDatabasePath(settings)
                                    : wholePath(options.database);
}

IrrigationDefaults defaultsFor(IPlatform& platform, const RunSettings& settings) {
    const auto valuesOf = [&](const std::string& path, const std::string& field) {
        std::set<std::string> values;
        const auto layer = platform.features().openFeatureClass(path);
        for (std::size_t r = 0; r < layer->recordCount(); ++r) {
            const std::string value = keyText(layer->value(r, field));
            if (!value.empty()) values.insert(value);
        }
        return std::vector<std::string>(values.begin(), values.end());
    };
    return starterDefaults(valuesOf(settings.Zones, settings.ZoneField),
                           valuesOf(settings.LandCover, kCropField));
}

void createStarter(IPlatform& platform, const RunSettings& settings, const std::string& path) {
    const IrrigationDefaults defaults = defaultsFor(platform, settings);
    createIrrigationDatabase(platform, path, defaults);
    fmt::print(
        "{} is made: {} methods, default shares for {} zones and {} pairs of zone and crop "
        "(national figures: table IR_Sources; replace them by your own)\n",
        path, defaults.methods.size(), defaults.perZone.size(), defaults.perZoneAndCrop.size());
}

}  // namespace

int irdbCreate(const Session& session, const std::string& file) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    const RunSettings* settings = gatedSettings(application);
    if (!settings) return kFailed;
    const std::string path = databaseOf(*settings, {file, {}, {}, {}});
    if (application.platform().files().fileExists(path)) {
        if (platform::isAccessFile(path)) {
            throw PlatformError(path +
                                " is a genuine Access database, which is never changed: "
                                "give another file");
        }
        if (!application.prompts().confirm(path + " exists, replace it?", {})) return kFailed;
    }
    createStarter(application.platform(), *settings, path);
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
        const auto count = connection->open("SELECT count(*) AS n FROM [" + table + "]");
        info["tables"][table] = std::get<double>(count->value("n"));
    }
    if (session.json) {
        fmt::print("{}\n", info.dump(2));
        return kDone;
    }
    fmt::print("{}\n", path);
    if (info.contains("copy")) {
        fmt::print("an Access database, which stays as it is; work goes to its copy {}\n",
                   info["copy"].get<std::string>());
    }
    for (const auto& [table, rows] : info["tables"].items()) {
        fmt::print("{:>8} rows  {}\n", rows.get<double>(), table);
    }
    return kDone;
}

int effApply(const Session& session, const EfficiencyOptions& options) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    frmEfficiency form(application);
    form.load();
    if (!form.isOpen() || !apply(form, options)) return kFailed;
    fmt::print("zones: {}\n", joinedNames(zonesOf(form.cmbZone)));
    return kDone;
}

int effZones(const Session& session, const EfficiencyOptions& options,
             const std::vector<std::string>& zones) {
    return withDialog(session, options, [&](frmEfficiency& form) {
        const auto chosen = zones.empty() ? zonesOf(form.cmbZone) : zones;
        if (fillZones(form, options, chosen) && !session.terminal.quiet) {
            fmt::print("{} zone(s) have shares and efficiencies; velmora eff show shows them\n",
                       chosen.size());
        }
    });
}

void requireShares(const Session& session, const EfficiencyOptions& options) {
    if (!options.defaultShares.empty()) return;
    HeadlessApplication application(session.settingsFolder, session.terminal);
    const IFileSystem& files = application.platform().files();
    if (!files.fileExists(defaultSettingsPath(session.settingsFolder))) return;
    const RunSettings settings = readSettings(files, defaultSettingsPath(session.settingsFolder));
    const std::string path = databaseOf(settings, options);
    if (files.fileExists(path)) {
        const IrrigationDatabase database(application.platform(), path);
        if (database.hasEfficiencyTable() && !database.query("Select * from IREF")->eof()) return;
    }
    throw PlatformError(
        "No zone has shares of irrigation methods yet: say --default-shares zone (or crop), or "
        "fill in the zones with velmora eff zone");
}

void useEfficiencyDialog(TerminalPrompts& prompts, Form& form, const EfficiencyOptions& options) {
    prompts.script = [&](const std::string& question) { return answerTo(question, options); };
    if (apply(form, options)) {
        auto& zones = form.control<ListBox>("cmbZone");
        const bool filled =
            options.defaultShares.empty() || fillZones(form, options, zonesOf(zones));
        if (filled) form.control<CommandButton>("cmdEFMap").click();
    }
    prompts.script = nullptr;
}

int effMap(const Session& session, const EfficiencyOptions& options) {
    return withDialog(session, options, [&](frmEfficiency& form) {
        form.cmdEFMap.click();
        if (form.failed()) return;
        platform::Platform platform;
        const auto grid = platform.rasters()
                              .openFromFolder(processState().settings.OutputWorkspace)
                              ->openRasterDataset("IREF");
        const GridStatistics s = statisticsOf(*grid->createDefaultRaster());
        if (s.cells == 0) {
            throw PlatformError(
                "No cell has an efficiency: give the zones shares with velmora eff "
                "all-zones first");
        }
        fmt::print("{}: {} cells with efficiencies of {:.3g} to {:.3g}\n", grid->path(), s.cells,
                   s.minimum, s.maximum);
    });
}

int effShow(const Session& session, const EfficiencyOptions& options, const std::string& zone,
            TableForm form) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    const RunSettings* settings = gatedSettings(application);
    if (!settings) return kFailed;
    const IrrigationDatabase database(application.platform(), databaseOf(*settings, options));
    if (!database.hasEfficiencyTable()) {
        throw PlatformError("There are no efficiencies yet: velmora eff apply makes their table");
    }
    DataGrid grid("IREF");
    showRows(grid, *database.query(zone.empty() ? "Select * from IREF"
                                                : IrrigationDatabase::efficienciesOf(zone)));
    if (session.json) {
        fmt::print("{}\n", rowsOf(grid, [](std::size_t column) { return column > 1; }).dump(2));
    } else {
        fmt::print("{}", form == TableForm::csv ? csvText(grid) : alignedText(grid));
    }
    return kDone;
}

int effSet(const Session& session, const EfficiencyOptions& options, const std::string& zone,
           const std::string& crop, const std::vector<std::string>& assignments) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    const RunSettings* settings = gatedSettings(application);
    if (!settings) return kFailed;
    IrrigationDatabase database(application.platform(), databaseOf(*settings, options));
    const auto row = database.query(IrrigationDatabase::efficienciesOf(zone) +
                                    " AND [CropType]=" + quotedText(crop));
    if (row->eof()) {
        throw PlatformError("There is no row of zone \"" + zone + "\" and crop \"" + crop +
                            "\": velmora eff show lists the rows, velmora eff zone makes them");
    }
    const std::vector<std::string> methods = methodColumns(*row);
    for (const std::string& assignment : assignments) {
        const auto equals = assignment.find('=');
        const std::string method = assignment.substr(0, equals);
        const bool known = std::ranges::any_of(
            methods, [&](const std::string& m) { return sameIgnoringCase(m, method); });
        const auto share = equals == std::string::npos
                               ? std::nullopt
                               : strictNumber(assignment.substr(equals + 1));
        if (!known || !share || *share < 0) {
            throw PlatformError(assignment + ": give METHOD=SHARE, as in " + methods.front() +
                                "=0.4; the methods are " + joinedNames(methods));
        }
        row->setValue(method, *share);
    }
    row->update();
    bool bad = false;
    database.estimateEfficiencies(zone, [&] { bad = true; });
    if (bad) application.prompts().message("Error in getting Method Efficiency", {});
    return bad ? kFailed : kDone;
}

void ensureIrrigationDatabase(const Session& session, const EfficiencyOptions& options) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    const RunSettings* settings = gatedSettings(application);
    if (!settings || settings->Zones.empty()) return;  // which the dialog tells
    const std::string path = databaseOf(*settings, options);
    if (application.platform().files().fileExists(path)) return;
    fmt::print("There is no irrigation database {}, so a starter database is made\n", path);
    createStarter(application.platform(), *settings, path);
}

}  // namespace velmora::cli
