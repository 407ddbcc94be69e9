// SPDX-License-Identifier: MIT
#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>

#include "forms/record_rows.h"
#include "gis/errors.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/efficiency_map_result.h"
#include "hosts/cli/failure.h"
#include "hosts/cli/headless_application.h"
#include "hosts/cli/table_text.h"
#include "hosts/results/time_stamp.h"
#include "irrigation/change_log.h"
#include "irrigation/crop_summary.h"
#include "irrigation/efficiency_check.h"
#include "irrigation/frm_efficiency.h"
#include "irrigation/zone_filling.h"
#include "settings/run_gate.h"
#include "settings/run_state.h"
#include "settings/stored_settings.h"

namespace velmora::cli {

namespace {

constexpr const char* kSummaryQuestion = "Table<SumCrop> Exists, Replace it?";

// The dialog's questions as the options answer them. No general "yes" may cost shares, so that the
// terminal is not asked. The crop summary is a list of what the land cover has: whoever fills in
// rows from it takes a new one.
std::optional<bool> answerTo(const std::string& question, const EfficiencyOptions& options) {
    if (question != kSummaryQuestion) return options.newTables;
    return options.newTables || !options.defaultShares.empty();
}

bool failed(const Form& form) { return dynamic_cast<const TrappedForm&>(form).failed(); }

RunSettings settingsOf(HeadlessApplication& application) {
    return requiredSettings(application.platform().files(), application.extensionFolder());
}

std::string databaseIn(const Form& form) { return form.control<TextBox>("txtIRDB").text(); }

// What a new table would cost is kept in the database under another name.
void keepEfficiencies(HeadlessApplication& application, const std::string& path) {
    if (!application.platform().files().fileExists(path)) return;
    IrrigationDatabase database(application.platform(), path);
    if (!database.hasEfficiencyTable() || database.query("Select * from IREF")->eof()) return;
    const std::string name = "IREF_" + timeStamp();
    database.copyEfficiencyTable(name);
    application.prompts().notice("The old shares and efficiencies are kept as table " + name +
                                 " of " + path);
}

// Applies the database. Its tables stay unless the options say otherwise.
bool apply(HeadlessApplication& application, Form& form, const EfficiencyOptions& options) {
    if (!options.database.empty()) {
        form.control<TextBox>("txtIRDB").enter(wholePath(options.database));
    }
    if (options.newTables) keepEfficiencies(application, databaseIn(form));
    application.prompts().script = [&](const std::string& question) {
        return answerTo(question, options);
    };
    form.control<CommandButton>("cmdApplyIRDB").click();
    application.prompts().script = nullptr;
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

ZoneFilling fillingOf(const EfficiencyOptions& options) {
    ZoneFilling filling;
    if (!options.cvef.empty()) filling.cvef = strictNumber(options.cvef);
    if (!options.defaultShares.empty()) {
        filling.defaults =
            options.defaultShares == "zone" ? DefaultShares::ofZone : DefaultShares::ofZoneAndCrop;
    }
    filling.overwrite = options.overwriteShares;
    return filling;
}

void tellGaps(IPrompts& prompts, const std::string& zone, const FilledZone& filled) {
    if (!filled.withoutDefaults.empty()) {
        prompts.notice("The default tables have no row of zone \"" + zone + "\" for " +
                       joinedNames(filled.withoutDefaults) + ": shares of 0");
    }
    if (filled.withEfficiency == 0) {
        prompts.notice("No crop of zone \"" + zone +
                       "\" has an efficiency: give it shares with --default-shares or velmora eff "
                       "set");
    }
}

void tellDoubts(IPrompts& prompts, const IrrigationDatabase& database,
                const std::vector<std::string>& zones = {}) {
    for (const std::string& doubt : efficiencyDoubts(database, zones)) prompts.notice(doubt);
}

// What filling zones came to.
struct Filling {
    bool done = true;
    std::size_t rows = 0;
    std::size_t withEfficiency = 0;
    std::size_t kept = 0;
};

// Fills one zone after the other, and stops at the first that fails.
Filling fillZones(HeadlessApplication& application, const Form& form,
                  const EfficiencyOptions& options, const std::vector<std::string>& zones) {
    IPlatform& platform = application.platform();
    IPrompts& prompts = application.prompts();
    IrrigationDatabase database(platform, databaseIn(form));
    ChangeLog changes(database);
    const auto crops =
        summarizedCrops(platform, joinedPath(parentFolderName(databaseIn(form)), "SumCrop.dbf"));
    Filling sum;
    for (const std::string& zone : zones) {
        try {
            const FilledZone filled =
                fillZone(database, zone, crops, fillingOf(options), [&sum] { sum.done = false; });
            sum.rows += filled.rows;
            sum.withEfficiency += filled.withEfficiency;
            sum.kept += filled.kept;
            tellGaps(prompts, zone, filled);
            if (!sum.done) prompts.failure("Error in getting Method Efficiency");
        } catch (const PlatformError& e) {
            prompts.failure(e.what());
            sum.done = false;
        }
        if (!sum.done) break;
    }
    changes.note(options.defaultShares.empty() ? "eff zone"
                                               : "default shares of " + options.defaultShares);
    if (!sum.done) return sum;
    if (sum.kept > 0) {
        prompts.notice("Default shares are not given to " + counted(sum.kept, "row") +
                       " with shares, or not irrigated: --overwrite-shares would");
    }
    return sum;
}

// Opens the dialog behind the run gate and lets `use` work with it; 1 when something failed.
int withDialog(const Session& session, const EfficiencyOptions& options,
               const std::function<void(HeadlessApplication&, frmEfficiency&)>& use) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    frmEfficiency form(application);
    form.load();
    if (!form.isOpen()) return kFailed;
    if (apply(application, form, options)) use(application, form);
    const bool failure = form.failed() || application.prompts().failures() > 0;
    form.close();
    return failure ? kFailed : kDone;
}

// Makes the map, and tells what is doubtful in it and in what it is made of.
EfficiencyMapResult makeMap(HeadlessApplication& application, Form& form) {
    form.control<CommandButton>("cmdEFMap").click();
    if (failed(form)) return {};
    EfficiencyMapResult result =
        efficiencyMapResult(application.platform(), settingsOf(application), databaseIn(form));
    tellDoubts(application.prompts(), IrrigationDatabase(application.platform(), databaseIn(form)));
    if (result.cells == 0) {
        application.prompts().reason(
            "No cell has an efficiency: give the zones shares with velmora eff all-zones "
            "--default-shares crop, or velmora eff set");
    } else if (!result.bare.empty()) {
        application.prompts().notice(result.bare);
    }
    if (!result.declared.empty()) application.prompts().notice(result.declared);
    return result;
}

}  // namespace

int effApply(const Session& session, const EfficiencyOptions& options) {
    return withDialog(session, options, [&](HeadlessApplication&, frmEfficiency& form) {
        if (session.json) {
            printJson({{"zones", zonesOf(form.cmbZone)}});
        } else {
            print("zones: {}\n", joinedNames(zonesOf(form.cmbZone)));
        }
    });
}

int effZones(const Session& session, const EfficiencyOptions& options,
             const std::vector<std::string>& zones) {
    return withDialog(session, options, [&](HeadlessApplication& application, frmEfficiency& form) {
        const auto all = zonesOf(form.cmbZone);
        for (const std::string& zone : zones) {
            if (std::ranges::find(all, zone) == all.end()) {
                throw PlatformError("There is no zone \"" + zone + "\": choose one of " +
                                    joinedNames(all));
            }
        }
        const auto& chosen = zones.empty() ? all : zones;
        const Filling filled = fillZones(application, form, options, chosen);
        tellDoubts(application.prompts(),
                   IrrigationDatabase(application.platform(), databaseIn(form)), chosen);
        if (filled.done && !session.terminal.quiet) {
            sayDone(session, "{} of {} of {} have an efficiency; velmora eff show shows them\n",
                    filled.withEfficiency, counted(filled.rows, "row"),
                    counted(chosen.size(), "zone"));
        }
    });
}

void requireShares(const Session& session, const EfficiencyOptions& options) {
    if (!options.defaultShares.empty()) return;
    HeadlessApplication application(session.settingsFolder, session.terminal);
    const IFileSystem& files = application.platform().files();
    const auto settings = storedSettings(files, session.settingsFolder);
    if (!settings) return;
    const std::string path = irrigationDatabaseOf(*settings, options);
    if (files.fileExists(path)) {
        const IrrigationDatabase database(application.platform(), path);
        if (database.hasEfficiencyTable() && !database.query("Select * from IREF")->eof()) return;
    }
    throw PlatformError(
        "No zone has shares of irrigation methods yet: say --default-shares zone (or crop), or "
        "fill in the zones with velmora eff zone");
}

void useEfficiencyDialog(HeadlessApplication& application, Form& form,
                         const EfficiencyOptions& options) {
    if (!apply(application, form, options)) return;
    const auto zones = zonesOf(form.control<ListBox>("cmbZone"));
    const bool filled =
        options.defaultShares.empty() || fillZones(application, form, options, zones).done;
    if (filled) makeMap(application, form);
}

int effMap(const Session& session, const EfficiencyOptions& options) {
    return withDialog(session, options, [&](HeadlessApplication& application, frmEfficiency& form) {
        const EfficiencyMapResult map = makeMap(application, form);
        if (map.cells == 0) return;
        if (session.json) {
            printJson({{"grid", map.path},
                       {"cells", map.cells},
                       {"minimum", map.minimum},
                       {"maximum", map.maximum}});
        } else {
            print("{}: {} cells with efficiencies of {:.3g} to {:.3g}\n", map.path, map.cells,
                  map.minimum, map.maximum);
        }
    });
}

int effShow(const Session& session, const EfficiencyOptions& options, const std::string& zone,
            TableForm form) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    if (!passRunGate(application)) return kFailed;
    const IrrigationDatabase database(application.platform(),
                                      irrigationDatabaseOf(processState().settings, options));
    if (!database.hasEfficiencyTable()) {
        throw PlatformError("There are no efficiencies yet: velmora eff apply makes their table");
    }
    DataGrid grid("IREF");
    showRows(grid, *database.query(zone.empty() ? "Select * from IREF"
                                                : IrrigationDatabase::efficienciesOf(zone)));
    if (session.json) {
        printJson(rowsOf(grid, [](std::size_t column) { return column > 1; }));
    } else if (form == TableForm::csv) {
        printData(csvText(grid));
    } else {
        printText(alignedText(grid));
    }
    return kDone;
}

namespace {

// Sets the shares METHOD=SHARE of a row. Throws PlatformError, and stores nothing then.
void setShares(IRecordset& row, const std::vector<std::string>& assignments) {
    const std::vector<std::string> methods = methodColumns(row);
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
        row.setValue(method, *share);
    }
}

// No shares, and an efficiency of 0: such land is left out of the map.
void declareNotIrrigated(IRecordset& row) {
    row.setValue(kNotIrrigatedColumn, 1.0);
    for (const std::string& method : methodColumns(row)) row.setValue(method, 0.0);
    row.setValue("FAEF", 0.0);
    row.setValue("IREF", 0.0);
}

// Sets METHOD=EFFICIENCY of a zone's list. Throws PlatformError.
void setMethod(const IrrigationDatabase& database, const std::string& zone,
               const std::string& assignment) {
    const auto equals = assignment.find('=');
    const std::string code = assignment.substr(0, equals);
    const auto efficiency =
        equals == std::string::npos ? std::nullopt : strictNumber(assignment.substr(equals + 1));
    bool known = false;
    bool percent = false;  // as those of the list are
    std::vector<std::string> codes;
    const auto methods = database.query(IrrigationDatabase::methodsOf(zone));
    for (; !methods->eof(); methods->moveNext()) {
        codes.push_back(keyText(methods->value("IRMD")));
        known = known || sameIgnoringCase(codes.back(), code);
        const FieldValue value = methods->value("IRMDEF");
        const auto* number = std::get_if<double>(&value);
        percent = percent || (number && *number > 1);
    }
    if (!known || !efficiency || *efficiency <= 0 || *efficiency > (percent ? 100 : 1)) {
        throw PlatformError(assignment + ": give METHOD=EFFICIENCY, as in " +
                            (codes.empty() ? "Drip" : codes.front()) +
                            (percent ? "=80, percent as in the list" : "=0.8, a fraction") +
                            "; the methods are " + joinedNames(codes));
    }
    for (methods->moveFirst(); !methods->eof(); methods->moveNext()) {
        if (!sameIgnoringCase(keyText(methods->value("IRMD")), code)) continue;
        methods->setValue("IRMDEF", *efficiency);
        methods->update();
        return;  // the first of several counts
    }
}

// What follows from changed shares, methods or conveyance, and what is told of it.
int estimateAnew(HeadlessApplication& application, IrrigationDatabase& database, ChangeLog& changes,
                 const std::string& zone, const std::string& action) {
    bool bad = false;
    try {
        database.estimateEfficiencies(zone, [&] { bad = true; });
    } catch (const PlatformError&) {
        changes.note(action);
        throw;
    }
    changes.note(action);
    if (bad) application.prompts().failure("Error in getting Method Efficiency");
    tellDoubts(application.prompts(), database, {zone});
    return bad ? kFailed : kDone;
}

// "" for a change that can be made.
std::string misuse(const RowChange& change) {
    if (change.notIrrigated && (!change.shares.empty() || !change.cvef.empty())) {
        return "--not-irrigated goes with neither shares nor --cvef";
    }
    if (change.crop.empty() && change.cvef.empty()) {
        return "give a crop with METHOD=SHARE ... or --not-irrigated, or --cvef";
    }
    if (change.shares.empty() && change.cvef.empty() && !change.notIrrigated) {
        return "give METHOD=SHARE ..., --cvef or --not-irrigated";
    }
    return {};
}

}  // namespace

int effSet(const Session& session, const EfficiencyOptions& options, const RowChange& change) {
    if (const std::string wrong = misuse(change); !wrong.empty()) {
        tellFailure(wrong, {}, session.json);
        return kBadUsage;
    }
    HeadlessApplication application(session.settingsFolder, session.terminal);
    if (!passRunGate(application)) return kFailed;
    IrrigationDatabase database(application.platform(),
                                irrigationDatabaseOf(processState().settings, options));
    ChangeLog changes(database);
    if (change.notIrrigated) database.ensureNotIrrigatedColumn();
    std::string query = IrrigationDatabase::efficienciesOf(change.zone);
    if (!change.crop.empty()) query += " AND [CropType]=" + quotedText(change.crop);
    const auto row = database.query(query);
    if (row->eof()) {
        throw PlatformError("There is no row of zone \"" + change.zone + "\"" +
                            (change.crop.empty() ? "" : " and crop \"" + change.crop + "\"") +
                            ": velmora eff show lists the rows, velmora eff zone makes them");
    }
    const auto transaction = database.beginTransaction();
    for (; !row->eof(); row->moveNext()) {
        setShares(*row, change.shares);
        if (!change.shares.empty() && isMarkedNotIrrigated(*row)) {
            row->setValue(kNotIrrigatedColumn, FieldValue{});
        }
        if (!change.cvef.empty()) row->setValue("CVEF", *strictNumber(change.cvef));
        if (change.notIrrigated) declareNotIrrigated(*row);
        row->update();
    }
    transaction->commit();
    return estimateAnew(application, database, changes, change.zone, "eff set");
}

int effMethod(const Session& session, const EfficiencyOptions& options, const std::string& zone,
              const std::vector<std::string>& assignments) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    if (!passRunGate(application)) return kFailed;
    IrrigationDatabase database(application.platform(),
                                irrigationDatabaseOf(processState().settings, options));
    if (!database.hasEfficiencyTable() ||
        database.query(IrrigationDatabase::efficienciesOf(zone))->eof()) {
        throw PlatformError("There is no row of zone \"" + zone +
                            "\": velmora eff show lists the rows, velmora eff zone makes them");
    }
    ChangeLog changes(database);
    database.ensureMethods(zone);
    const auto transaction = database.beginTransaction();
    for (const std::string& assignment : assignments) setMethod(database, zone, assignment);
    transaction->commit();
    return estimateAnew(application, database, changes, zone, "eff method");
}

}  // namespace velmora::cli
