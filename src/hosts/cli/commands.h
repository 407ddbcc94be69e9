// SPDX-License-Identifier: MIT
// What each subcommand of `velmora` does. Every function returns the exit status: 0 done, 1 a
// failure that has been reported, 2 bad usage.
#pragma once

#include <string>
#include <vector>

#include "hosts/cli/terminal.h"

namespace velmora {
class Form;
struct ComparedGroup;
struct RunSettings;
}  // namespace velmora

namespace velmora::cli {

class HeadlessApplication;

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kBadUsage = 2;

// What all subcommands share.
struct Session {
    std::string settingsFolder;
    TerminalOptions terminal;
    bool json = false;
    int threads = 0;
    bool anonymous = false;  // records of runs name neither user nor machine
    bool sync = true;        // what is written reaches the disk before a command ends
};

// The options that all subcommands share as another command line repeats them: " --json ...".
std::string repeatedOptions(const Session& session);

// Says that a command has done what it was asked for: on standard output, but where that is to hold
// JSON alone on standard error.
template <class... T>
void sayDone(const Session& session, fmt::format_string<T...> format, T&&... values) {
    const std::string text = fmt::vformat(format, fmt::make_format_args(values...));
    session.json ? tellText(text) : printText(text);
}

// A path as the user types it, made whole; "" stays "".
std::string wholePath(const std::string& path);

enum class TableForm { aligned, csv };

// Says that there are no settings and what makes them; the failure that this is.
int failWithoutSettings(const Session& session);

// `velmora settings`: the buttons of the General Settings form.
int applySettings(const Session& session, const std::vector<std::string>& assignments);
int showSettings(const Session& session);
int saveSettingsAs(const Session& session, const std::string& file);
int loadSettings(const Session& session, const std::string& file);

// How zones are filled in.
struct EfficiencyOptions {
    std::string database;       // another irrigation database than the one beside the zones
    std::string cvef;           // the conveyance efficiency of the zones
    std::string defaultShares;  // "zone" or "crop": which default shares rows without shares take
    bool overwriteShares = false;  // rows with shares take default shares too
    bool newTables = false;        // IREF, after a copy of it, and the crop summary are made anew
};

// `velmora irdb`: the irrigation database.
int irdbCreate(const Session& session, const std::string& file, bool replace);
int irdbInfo(const Session& session, const std::string& file);
// What was changed in it, by whom and when.
int irdbChanges(const Session& session, const std::string& file, TableForm form);
// Makes a starter database, and says so, when there is none.
void ensureIrrigationDatabase(const Session& session, const EfficiencyOptions& options);
// The database that the options name, or the one beside the zones.
std::string irrigationDatabaseOf(const RunSettings& settings, const EfficiencyOptions& options);

// What `velmora eff set` changes in a zone.
struct RowChange {
    std::string zone;
    std::string crop;                 // "": all crops, which may get another cvef
    std::vector<std::string> shares;  // METHOD=SHARE of the crop
    std::string cvef;
    bool notIrrigated = false;  // the crop has neither shares nor an efficiency
};

// `velmora eff`: the irrigation efficiency dialog.
int effApply(const Session& session, const EfficiencyOptions& options);
int effZones(const Session& session, const EfficiencyOptions& options,
             const std::vector<std::string>& zones);  // none for all
int effMap(const Session& session, const EfficiencyOptions& options);
int effShow(const Session& session, const EfficiencyOptions& options, const std::string& zone,
            TableForm form);
int effSet(const Session& session, const EfficiencyOptions& options, const RowChange& change);
// Sets METHOD=EFFICIENCY of a zone's methods.
int effMethod(const Session& session, const EfficiencyOptions& options, const std::string& zone,
              const std::vector<std::string>& assignments);
// Does with the open dialog what `velmora run eff` asks for: applies the database, fills all zones
// when default shares are asked for, and makes the map.
void useEfficiencyDialog(HeadlessApplication& application, Form& form,
                         const EfficiencyOptions& options);
// Throws PlatformError when there are settings, but neither shares in the database nor an option
// that makes some.
void requireShares(const Session& session, const EfficiencyOptions& options);

// What a reference ET run makes beside its grids.
struct BesideRefEt {
    bool standard = false;  // reference ET by the papers' choices
    bool quality = false;   // grids of flags
    bool noWorkDatabase = false;
};

// `velmora run all`: the steps in their order.
struct ChainOptions {
    EfficiencyOptions efficiency;
    std::string from;  // the first step, "" for the first of all
    std::string only;  // the only step, "" for all
    bool diagnose = false;
    bool useOld = false;  // read grids of earlier runs rather than stop
    bool strict = false;  // not on inputs with warnings or errors
    BesideRefEt beside = {};
};
int runAll(const Session& session, const ChainOptions& options);

// `velmora run STEP [--diagnose] [--standard] [--quality]`: carries out the step and prints what
// came of it; with diagnostics, also what stands behind the step's surfaces, which is written into
// the output folder.
int runStep(const Session& session, const std::string& step, const ChainOptions& options);

// `velmora kc`: the Kc-Map Maker on the settings' table and land cover.
struct KcOptions {
    std::string table;     // another crop coefficient table
    std::string field;     // another field of the land cover
    std::string cellSize;  // another cell size of the maps
};
int kcNew(const Session& session, const std::string& file);
int kcList(const Session& session, const KcOptions& options);
int kcMatch(const Session& session, const KcOptions& options);
int kcSet(const Session& session, const KcOptions& options, const std::string& crop,
          const std::vector<std::string>& assignments, bool isNew);
int kcMaps(const Session& session, const KcOptions& options);
// Sets the form's controls as the options say, and presses "Make Kc Maps".
void pressMakeKcMaps(const Session& session, Form& form, const KcOptions& options);

// `velmora table NAME`: a table of the output folder, or some of its columns.
int showTable(const Session& session, const std::string& name,
              const std::vector<std::string>& columns, TableForm form);

// `velmora verify [FOLDER]`: whether inputs and outputs still are what the records of the runs say,
// and `bands` bands of rows of each product come out the same when they are made again.
int verify(const Session& session, const std::string& folder, int bands);

// `velmora seal [FOLDER]`: the SHA-256 of every output and record in one file.
int seal(const Session& session, const std::string& folder);

// `velmora account`: the water account of the run in the output folder.
struct AccountRequest {
    bool metric = false;
    std::vector<std::string> by;  // "zone", "crop", "month", "land": the rows; none for an overview
    bool csv = false;
    std::string csvFile;    // "" prints it
    std::string gpkgFile;   // "" for none
    std::string cropField;  // another field of the land cover's crop types
};
int account(const Session& session, const AccountRequest& request);

// `velmora report [FILE]`: the run in the output folder as one HTML page, or printed.
struct ReportRequest {
    std::string file;    // "" for report.html or report.pdf in the output folder
    bool draft = false;  // also of results that do not hold together
    bool pdf = false;
};
int report(const Session& session, const ReportRequest& request);

// `velmora validate`: the equations against published figures; fails when one is outside of its
// tolerance.
enum class ValidationForm { text, summary, markdown, departures };
int validate(const Session& session, ValidationForm form);
// What it does with a comparison.
int showComparison(const Session& session, ValidationForm form,
                   const std::vector<ComparedGroup>& groups);

// `velmora commands`: the toolbar and menus as the host sees them.
int listCommands(const Session& session);

// `velmora check`: what is wrong or suspicious in the inputs; each finding, or a line for each
// kind.
int checkSettings(const Session& session, bool all);

// `velmora grid`: datasets by path, or by name in the output folder.
int gridInfo(const Session& session, const std::string& dataset);
int gridStatistics(const Session& session, const std::vector<std::string>& datasets);
int gridCopy(const Session& session, const std::string& from, const std::string& to);
int gridExport(const Session& session, const std::string& dataset, const std::string& file);
int gridPicture(const Session& session, const std::string& dataset, const std::string& file,
                const std::string& title);

// `velmora demo DIR`: the sample basin from nothing to the report of the whole chain, or its inputs
// and settings alone.
int demo(const Session& session, const std::string& folder, bool inputsOnly);

}  // namespace velmora::cli
