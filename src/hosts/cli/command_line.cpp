// SPDX-License-Identifier: MIT
#include "hosts/cli/command_line.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <map>
#include <sstream>

#include "gis/numbers.h"
#include "gis/text.h"
#include "hosts/chain/steps.h"
#include "hosts/cli/cancelling.h"
#include "hosts/cli/console.h"
#include "hosts/cli/failure.h"
#include "hosts/cli/headless_application.h"
#include "hosts/cli/man_page.h"
#include "hosts/components/build_state.h"
#include "modelling/products.h"
#include "platform/platform.h"
#include "settings/settings_fields.h"
#include "version.h"

namespace velmora::cli {

namespace {

const std::map<std::string, ProgressForm> kProgressForms = {{"auto", ProgressForm::automatic},
                                                            {"lines", ProgressForm::lines},
                                                            {"bar", ProgressForm::bar},
                                                            {"json", ProgressForm::json}};

std::string settingsHelp() {
    std::string help = "fields:\n";
    for (const SettingsField& field : settingsFields()) {
        help += fmt::format("  {:<20} {}\n", field.name, field.help);
    }
    return help;
}

// What is wrong with the text of a share of 1, "" for nothing.
std::string isFraction(const std::string& text) {
    const auto number = strictNumber(text);
    return number && *number > 0 && *number <= 1 ? std::string()
                                                 : text + " is no fraction such as 0.9";
}

// What is wrong with the text of a number of threads, "" for nothing.
std::string isThreadCount(const std::string& text) {
    const auto number = strictNumber(text);
    const bool good = number && *number >= 0 && *number <= 4096 && *number == std::floor(*number);
    return good ? std::string() : text + " is no number of threads such as 4";
}

}  // namespace

CommandLine::CommandLine()
    : app_("Regional evapotranspiration and irrigation water use as monthly grids", "velmora") {
    app_.require_subcommand(0, 1);
    app_.fallthrough();
    app_.set_version_flag("--version", std::string("velmora ") + kVersion);
    app_.add_option("--settings-folder", session_.settingsFolder,
                    "Folder of the settings file (default: the user's own)");
    app_.add_flag("--quiet", session_.terminal.quiet, "Print no progress lines");
    app_.add_option("--progress", session_.terminal.progress,
                    "auto (a bar on a terminal, else lines), lines, bar, or json (everything on "
                    "standard error as lines of JSON)")
        ->transform(CLI::CheckedTransformer(kProgressForms).description("FORM"));
    app_.add_flag("--json", session_.json,
                  "Print results as JSON, where there are any, and failures");
    app_.add_flag("--yes", yes_, "Answer every question with yes");
    app_.add_flag("--no", no_, "Answer every question with no")->excludes("--yes");
    app_.add_option("--threads", session_.threads,
                    "Threads to use (default: all that the machine has)")
        ->check(isThreadCount, "COUNT");
    app_.add_flag("--no-sync", noSync_,
                  "Do not wait until what is written has reached the disk: faster, but a power cut "
                  "may lose it");
    app_.add_flag("--anonymous", session_.anonymous,
                  "Name neither user nor machine in the records of the runs");
    app_.add_flag("--man-page", manPage_, "Print the manual page")->group("");
    addSettings();
    addRun();
    whenChosen(add(app_, "commands", "Show the toolbar and menus as a host sees them",
                   "velmora commands --json"),
               listCommands);
    CLI::App* check =
        add(app_, "check", "List what is wrong or suspicious in the inputs that the settings name",
            "velmora check --all");
    check->add_flag("--all", all_, "List each finding, not one line for all of a kind");
    whenChosen(check, [this](const Session& s) { return checkSettings(s, all_); });
    addKc();
    addEfficiency();
    addTable();
    addRecords();
    addAccount();
    addReport();
    addGrid();
    addValidate();
    addDemo();
}

CLI::App* CommandLine::add(CLI::App& parent, const std::string& name,
                           const std::string& description, const std::string& example) {
    CLI::App* command = parent.add_subcommand(name, description);
    command->footer("example: " + example);
    return command;
}

void CommandLine::whenChosen(CLI::App* command, Action action) {
    command->callback([this, action = std::move(action)] { action_ = action; });
}

void CommandLine::addSettings() {
    CLI::App* settings = add(app_, "settings", "Set, show, save and load the settings of a run",
                             "velmora settings apply DEM=dem.tif CellSize=500 RefETMethod=2");
    settings->require_subcommand(1);
    CLI::App* apply =
        add(*settings, "apply", "Set fields in the General Settings form and apply them",
            "velmora settings apply CellSize=500 BeginMonth=Apr EndMonth=Sep\n\n" + settingsHelp());
    apply->add_option("assignments", assignments_, "Field=Value ...");
    whenChosen(apply, [this](const Session& s) { return applySettings(s, assignments_); });
    whenChosen(add(*settings, "show", "Show the settings that the next run uses",
                   "velmora settings show --json"),
               showSettings);
    CLI::App* saveAs = add(*settings, "save-as", "Save the settings under another name",
                           "velmora settings save-as summer.inf");
    saveAs->add_option("file", first_, "The file to write (.inf)")->required();
    whenChosen(saveAs, [this](const Session& s) { return saveSettingsAs(s, first_); });
    CLI::App* load = add(*settings, "load", "Load saved settings and apply them",
                         "velmora settings load summer.inf");
    load->add_option("file", first_, "The file to read (.inf)")->required();
    whenChosen(load, [this](const Session& s) { return loadSettings(s, first_); });
}

void CommandLine::addRun() {
    CLI::App* run = add(app_, "run", "Run a model step, or all of them, on the applied settings",
                        "velmora run all --default-shares crop --cvef 0.9");
    std::vector<std::string> steps = stepNames();
    steps.emplace_back("all");
    run->add_option("step", first_,
                    "refet (reference ET), kc (crop coefficient maps), cropet (crop ET), ppt "
                    "(precipitation), nir (net irrigation requirement), eff (irrigation "
                    "efficiency), irr (irrigation water requirement) or all (the steps in their "
                    "order, with the copies of grids that one step writes and another reads under "
                    "another name)")
        ->required()
        ->check(CLI::IsMember(steps));
    run->add_flag("--diagnose", diagnose_,
                  "Show what stands behind the surfaces (regression, semivariogram, excluded "
                  "stations, leave-one-out errors) and write it into the output folder");
    run->add_flag("--standard", chain_.beside.standard,
                  "Of refet: also make RefETstd_... grids by the papers' own choices (soil heat "
                  "flux, calendar years, clear-sky ratio, coefficient floor, nothing below 0) and "
                  "tell how they differ");
    run->add_flag("--quality", chain_.beside.quality,
                  "Of refet: also make QA_... grids of flags, which mark the cells that no physics "
                  "allows and no station bears out");
    run->add_flag(
        "--no-work-database", chain_.beside.noWorkDatabase,
        "Of refet: do without GridOP.mdb, the table of all cells of the last month, which "
        "takes about as long and as much room as the grids of a year; one of an earlier "
        "run is removed");
    const auto [cvef, shares] = withShares(run);
    cvef->needs(shares);  // a run fills in zones with both or leaves them as they are
    withDatabase(run);
    auto* from = run->add_option("--from", chain_.from, "Begin run all with this step")
                     ->check(CLI::IsMember(stepNames()));
    run->add_option("--only", chain_.only, "Run this step of run all, with its copies, alone")
        ->check(CLI::IsMember(stepNames()))
        ->excludes(from);
    run->add_flag("--use-old", chain_.useOld,
                  "Let run all read grids that are left from earlier runs, or copies older than "
                  "their source, rather than stop");
    run->add_flag("--strict", chain_.strict,
                  "Do not run on inputs for which velmora check has warnings or errors");
    whenChosen(run, [this](const Session& s) {
        chain_.efficiency = efficiency_;
        chain_.diagnose = diagnose_;
        for (const auto& [wanted, option] :
             {std::pair{chain_.beside.standard, "--standard"},
              std::pair{chain_.beside.quality, "--quality"},
              std::pair{chain_.beside.noWorkDatabase, "--no-work-database"}}) {
            if (!wanted || first_ == "refet" || first_ == "all") continue;
            tellFailure(std::string(option) + " belongs to run refet and run all", {}, s.json);
            return kBadUsage;
        }
        return first_ == "all" ? runAll(s, chain_) : runStep(s, first_, chain_);
    });
}

void CommandLine::withDatabase(CLI::App* command) {
    command->add_option("--database", efficiency_.database,
                        "Another irrigation database than IrDB.mdb beside the zones");
}

std::pair<CLI::Option*, CLI::Option*> CommandLine::withShares(CLI::App* command) {
    CLI::Option* cvef =
        command
            ->add_option("--cvef", efficiency_.cvef,
                         "The conveyance efficiency of the zones, a fraction (default: theirs, 1.0 "
                         "for new rows)")
            ->check(isFraction, "FRACTION");
    CLI::Option* shares = command
                              ->add_option("--default-shares", efficiency_.defaultShares,
                                           "Give rows without shares the default shares of each "
                                           "zone (zone) or of zone and crop (crop)")
                              ->check(CLI::IsMember({"zone", "crop"}));
    command
        ->add_flag("--overwrite-shares", efficiency_.overwriteShares,
                   "Give default shares to rows that have shares, or are not irrigated, too")
        ->needs(shares);
    return {cvef, shares};
}

void CommandLine::addEfficiency() {
    CLI::App* irdb =
        add(app_, "irdb", "Make and look at the irrigation database", "velmora irdb create");
    irdb->require_subcommand(1);
    CLI::App* create = add(*irdb, "create",
                           "Make a starter database beside the zones: published method "
                           "efficiencies and default shares, with their sources",
                           "velmora irdb create");
    create->add_option("file", first_, "Another file than IrDB.mdb beside the zones");
    create->add_flag("--replace-database", replaceDatabase_,
                     "Replace a database, of which a copy is kept beside");
    whenChosen(create,
               [this](const Session& s) { return irdbCreate(s, first_, replaceDatabase_); });
    CLI::App* info = add(*irdb, "info", "Show a database's tables; an Access file is imported",
                         "velmora irdb info IrDB.mdb");
    info->add_option("file", first_, "Another file than IrDB.mdb beside the zones");
    whenChosen(info, [this](const Session& s) { return irdbInfo(s, first_); });
    CLI::App* changes =
        add(*irdb, "changes", "Show what was changed in a database, by whom and when",
            "velmora irdb changes --csv");
    changes->add_option("file", first_, "Another file than IrDB.mdb beside the zones");
    changes->add_flag("--csv", csv_, "Print comma-separated values");
    whenChosen(changes, [this](const Session& s) {
        return irdbChanges(s, first_, csv_ ? TableForm::csv : TableForm::aligned);
    });

    CLI::App* eff = add(app_, "eff", "Fill in irrigation methods and make the efficiency map",
                        "velmora eff all-zones --cvef 0.9 --default-shares crop");
    eff->require_subcommand(1);
    CLI::App* apply = add(*eff, "apply", "Open the database, make its tables and list the zones",
                          "velmora eff apply");
    apply->add_flag("--new-tables", efficiency_.newTables,
                    "Make the table IREF of shares and efficiencies and the list of crops anew; "
                    "the old IREF is kept in the database as IREF_<date>_<time>");
    withDatabase(apply);
    whenChosen(apply, [this](const Session& s) { return effApply(s, efficiency_); });
    addZones(*eff);
    CLI::App* map = add(*eff, "map", "Make the efficiency map, the grid IREF", "velmora eff map");
    withDatabase(map);
    whenChosen(map, [this](const Session& s) { return effMap(s, efficiency_); });
    CLI::App* show =
        add(*eff, "show", "Show the shares and efficiencies", "velmora eff show --csv");
    show->add_option("zone", first_, "One zone alone");
    show->add_flag("--csv", csv_, "Print comma-separated values");
    withDatabase(show);
    whenChosen(show, [this](const Session& s) {
        return effShow(s, efficiency_, first_, csv_ ? TableForm::csv : TableForm::aligned);
    });
    addShareSetting(*eff);
}

void CommandLine::addZones(CLI::App& eff) {
    CLI::App* zone = add(eff, "zone",
                         "Fill in a zone: its methods, a row for each crop, default shares where "
                         "they are asked for, and its efficiencies",
                         "velmora eff zone \"O'Dell Creek\" --cvef 0.9 --default-shares zone");
    zone->add_option("name", first_, "The zone's key")->required();
    withShares(zone);
    withDatabase(zone);
    whenChosen(zone, [this](const Session& s) { return effZones(s, efficiency_, {first_}); });
    CLI::App* all = add(eff, "all-zones", "Fill in one zone after the other",
                        "velmora eff all-zones --cvef 0.9 --default-shares crop");
    withShares(all);
    withDatabase(all);
    whenChosen(all, [this](const Session& s) { return effZones(s, efficiency_, {}); });
}

void CommandLine::addShareSetting(CLI::App& eff) {
    CLI::App* set = add(eff, "set",
                        "Set shares of a zone's crop or conveyance efficiencies, and estimate the "
                        "zone anew",
                        "velmora eff set \"O'Dell Creek\" Corn Furrow=0.4 Pivot=0.6");
    set->add_option("zone", change_.zone, "The zone's key")->required();
    set->add_option("crop", change_.crop, "The crop type (--cvef without one: all of the zone)");
    set->add_option("shares", change_.shares, "METHOD=SHARE ...");
    set->add_option("--cvef", change_.cvef, "The conveyance efficiency, a fraction")
        ->check(isFraction, "FRACTION");
    set->add_flag("--not-irrigated", change_.notIrrigated,
                  "The crop is not irrigated: no shares, no efficiency, no requirement");
    withDatabase(set);
    whenChosen(set, [this](const Session& s) { return effSet(s, efficiency_, change_); });
    CLI::App* method = add(eff, "method",
                           "Set efficiencies of a zone's methods, leave its shares as they are, "
                           "and estimate the zone anew",
                           "velmora eff method \"O'Dell Creek\" Furrow=0.65 Pivot=0.82");
    method->add_option("zone", first_, "The zone's key")->required();
    method->add_option("efficiencies", assignments_, "METHOD=EFFICIENCY ...")->required();
    withDatabase(method);
    whenChosen(method, [this](const Session& s) {
        return effMethod(s, efficiency_, first_, assignments_);
    });
}

void CommandLine::addKc() {
    CLI::App* kc = add(app_, "kc", "Make, fill and show the crop coefficient table, and make maps",
                       "velmora kc list");
    kc->require_subcommand(1);
    const auto withTable = [this](CLI::App* command) {
        command->add_option("--table", kcOptions_.table,
                            "Another crop coefficient table than the settings'");
    };
    const auto withField = [this](CLI::App* command) {
        command->add_option(
            "--field", kcOptions_.field,
            "The land cover's field of crop types (default: the one that names most "
            "of the table's crops)");
    };
    CLI::App* made =
        add(*kc, "new", "Make an empty crop coefficient table", "velmora kc new kc.dbf");
    made->add_option("file", first_, "The table to make (.dbf)")->required();
    whenChosen(made, [this](const Session& s) { return kcNew(s, first_); });
    CLI::App* list =
        add(*kc, "list", "Show the coefficients, and the land use types with their areas",
            "velmora kc list --json");
    withTable(list);
    withField(list);
    whenChosen(list, [this](const Session& s) { return kcList(s, kcOptions_); });
    CLI::App* match = add(*kc, "match", "Give every land use type a record in the table",
                          "velmora kc match --field Descriptio");
    withTable(match);
    withField(match);
    whenChosen(match, [this](const Session& s) { return kcMatch(s, kcOptions_); });
    CLI::App* set = add(*kc, "set", "Set coefficients of a crop type",
                        "velmora kc set \"Spring Grain\" May=0.6 Jun=1.1");
    withTable(set);
    set->add_flag("--new", newCrop_, "Add the crop type when the table lacks it");
    set->add_option("crop", first_, "The crop type")->required();
    set->add_option("coefficients", assignments_, "Month=Coefficient ...")->required();
    whenChosen(set, [this](const Session& s) {
        return kcSet(s, kcOptions_, first_, assignments_, newCrop_);
    });
    CLI::App* maps =
        add(*kc, "maps", "Make the Kc maps, as run kc does", "velmora kc maps --cell-size 250");
    withTable(maps);
    withField(maps);
    maps->add_option("--cell-size", kcOptions_.cellSize,
                     "Metres, 100 to 500 (default: the run's cell size)");
    whenChosen(maps, [this](const Session& s) { return kcMaps(s, kcOptions_); });
}

void CommandLine::addRecords() {
    CLI::App* check =
        add(app_, "verify",
            "Compare inputs and outputs with the records that the runs left, and make "
            "some cells of every product again",
            "velmora verify");
    check->add_option("folder", first_, "The output folder (default: that of the settings)");
    check
        ->add_option("--bands", bands_,
                     "Bands of 16 rows in which each product is made again (default: 2; 0: compare "
                     "files alone)")
        ->check(CLI::Range(0, 1000));
    whenChosen(check, [this](const Session& s) { return verify(s, first_, bands_); });
    CLI::App* close =
        add(app_, "seal",
            "Write the SHA-256 of every output and record into one file, to be signed "
            "or deposited",
            "velmora seal");
    close->add_option("folder", first_, "The output folder (default: that of the settings)");
    whenChosen(close, [this](const Session& s) { return seal(s, first_); });
}

void CommandLine::addTable() {
    CLI::App* table = add(app_, "table", "Show a table of the output folder",
                          "velmora table StatIRR --columns ZoneUnit,Month,IRR_V_acft --csv");
    std::vector<std::string> tables = zoneTableNames();
    std::ranges::reverse(tables);  // the last one, which is the result, first
    table->add_option("name", first_, joinedNames(tables) + " or another dBASE table")->required();
    table->add_option("--columns", names_, "Some of its columns, in the table's order")
        ->delimiter(',');
    table->add_flag("--csv", csv_, "Print comma-separated values");
    whenChosen(table, [this](const Session& s) {
        return showTable(s, first_, names_, csv_ ? TableForm::csv : TableForm::aligned);
    });
}

void CommandLine::addReport() {
    CLI::App* page = add(app_, "report",
                         "Write a report of the run: one HTML page with maps, charts, zone tables, "
                         "inputs and warnings",
                         "velmora report summer.html");
    page->add_option(
        "file", first_,
        "The file to write (default: report.html in the output folder, or report.pdf)");
    page->add_flag("--pdf", report_.pdf, "As a PDF file, which Chromium or Chrome prints");
    page->add_flag("--draft", report_.draft,
                   "Also of results that do not hold together, with the reasons on top");
    whenChosen(page, [this](const Session& s) {
        report_.file = first_;
        return report(s, report_);
    });
}

void CommandLine::addAccount() {
    CLI::App* command =
        add(app_, "account",
            "Account for the water of each zone, crop and month over the same cells, and show what "
            "is left over",
            "velmora account --by zone,month --units metric");
    command
        ->add_option_function<std::string>(
            "--units", [this](const std::string& units) { account_.metric = units == "metric"; },
            "us (acres, acre-feet, inches) or metric (hectares, cubic metres, millimetres)")
        ->check(CLI::IsMember({"us", "metric"}));
    command
        ->add_option("--by", account_.by,
                     "Rows by zone, crop, month or land (what it lacks), also several of them "
                     "(default: an overview; in CSV and JSON all four)")
        ->delimiter(',')
        ->check(CLI::IsMember({"zone", "crop", "month", "land"}));
    CLI::Option* csv = command
                           ->add_option("--csv", account_.csvFile,
                                        "Print comma-separated values, or write them to a file")
                           ->expected(0, 1)
                           ->type_name("[FILE]");
    command
        ->add_option("--gpkg", account_.gpkgFile,
                     "Write a GeoPackage (.gpkg): the zones with their sums, and the rows")
        ->type_name("FILE");
    command->add_option("--crop-field", account_.cropField,
                        "The land cover's field of crop types (default: Descriptio)");
    whenChosen(command, [this, csv](const Session& s) {
        account_.csv = csv->count() > 0;
        return account(s, account_);
    });
}

void CommandLine::addGrid() {
    CLI::App* grid =
        add(app_, "grid", "Look at grids, copy and export them", "velmora grid stats RefET_Jul_2");
    grid->require_subcommand(1);
    const char* dataset = "A dataset by its path, or by its name in the output folder";
    CLI::App* info =
        add(*grid, "info", "Show where a grid's cells lie", "velmora grid info RefET_Jul_2");
    info->add_option("dataset", first_, dataset)->required();
    whenChosen(info, [this](const Session& s) { return gridInfo(s, first_); });
    CLI::App* stats = add(*grid, "stats", "Show minimum, maximum, mean and deviation of grids",
                          "velmora grid stats RefET_Jun_2 RefET_Jul_2");
    stats->add_option("datasets", names_, dataset)->required();
    whenChosen(stats, [this](const Session& s) { return gridStatistics(s, names_); });
    CLI::App* copy =
        add(*grid, "copy", "Copy a grid under another name", "velmora grid copy IREF faef_500");
    copy->add_option("from", first_, dataset)->required();
    copy->add_option("to", second_, "The copy's name, or its path")->required();
    whenChosen(copy, [this](const Session& s) { return gridCopy(s, first_, second_); });
    CLI::App* exported = add(*grid, "export", "Export a grid as a Cloud Optimized GeoTIFF",
                             "velmora grid export RefET_Jul_2 july.tif");
    exported->add_option("dataset", first_, dataset)->required();
    exported->add_option("file", second_, "The file to write (.tif)")->required();
    whenChosen(exported, [this](const Session& s) { return gridExport(s, first_, second_); });
    CLI::App* picture = add(*grid, "picture", "Draw a grid as a PNG with a legend and a scale",
                            "velmora grid picture RefET_Jul_2 july.png --title \"July, inches\"");
    picture->add_option("dataset", first_, dataset)->required();
    picture->add_option("file", second_, "The file to write (.png)")->required();
    picture->add_option("--title", title_, "The title (default: the dataset's name)");
    whenChosen(picture,
               [this](const Session& s) { return gridPicture(s, first_, second_, title_); });
}

void CommandLine::addValidate() {
    CLI::App* command = add(app_, "validate",
                            "Compare the equations with published figures: each figure, ours, the "
                            "difference, the tolerance and the source",
                            "velmora validate --summary");
    auto* summary = command->add_flag("--summary", summary_, "Print one line for each source");
    auto* page = command->add_flag("--markdown", markdown_, "Print the page docs/validation.md");
    command
        ->add_flag("--departures", departures_,
                   "Print the page docs/departures.md: where the method departs from the papers, "
                   "and by how much")
        ->excludes(summary)
        ->excludes(page->excludes(summary));
    whenChosen(command, [this](const Session& s) {
        return validate(s, markdown_     ? ValidationForm::markdown
                           : departures_ ? ValidationForm::departures
                           : summary_    ? ValidationForm::summary
                                         : ValidationForm::text);
    });
}

void CommandLine::addDemo() {
    CLI::App* command =
        add(app_, "demo", "Make the sample basin in a folder and run it", "velmora demo basin");
    command->add_option("folder", first_, "The folder to make")->required();
    command->add_flag("--inputs-only", inputsOnly_,
                      "Make the inputs and their settings, run nothing");
    whenChosen(command, [this](const Session& s) { return demo(s, first_, inputsOnly_); });
}

std::optional<int> CommandLine::parse(int argc, const char* const* argv, std::ostream& out,
                                      std::ostream& err) {
    try {
        app_.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app_.exit(e, out, err) == 0 ? kDone : kBadUsage;
    }
    return std::nullopt;
}

int CommandLine::run(int argc, const char* const* argv) {
    std::ostringstream asked;
    std::ostringstream wrong;
    if (const auto ended = parse(argc, argv, asked, wrong)) {
        printText(asked.str());
        if (!wrong.str().empty()) tellText(wrong.str());
        return *ended;
    }
    int status = kFailed;
    try {
        status = runChosen();
    } catch (const std::exception& e) {
        tellFailure(e.what(), placeOfHandled(), session_.json);
    } catch (const Cancelled&) {
        // told below
    }
    if (status == kDone || !feedback().cancelled()) return status;
    tellOf("velmora", "stopped as you asked; what was finished before stays");
    return cancelledStatus();
}

int CommandLine::runChosen() {
    if (manPage_) {
        printText(manPage(app_));
        return kDone;
    }
    if (!action_) {
        printText(app_.help());
        return kBadUsage;
    }
    if (yes_) session_.terminal.answer = true;
    if (no_) session_.terminal.answer = false;
    if (session_.settingsFolder.empty()) session_.settingsFolder = defaultSettingsFolder();
    if (session_.terminal.progress == ProgressForm::json) tellAsJson();
    cancelOnSignals();
    session_.terminal.json = session_.json;
    session_.sync = !noSync_;
    platform::setOrigin({kVersion, buildState(), "velmora command", session_.anonymous});
    platform::setSyncing(session_.sync);
    const int threads = platform::useThreads(session_.threads);
    if (session_.threads > threads) {
        tell("note: the system gives {} instead of {}\n", counted(threads, "thread"),
             session_.threads);
    }
    return action_(session_);
}

std::string repeatedOptions(const Session& session) {
    std::string options;
    if (session.settingsFolder != defaultSettingsFolder()) {
        options += " --settings-folder " + shellWord(wholePath(session.settingsFolder));
    }
    if (session.terminal.quiet) options += " --quiet";
    for (const auto& [name, form] : kProgressForms) {
        if (form == session.terminal.progress && form != ProgressForm::automatic) {
            options += " --progress " + name;
        }
    }
    if (session.json) options += " --json";
    if (session.terminal.answer) options += *session.terminal.answer ? " --yes" : " --no";
    if (session.threads > 0) options += fmt::format(" --threads {}", session.threads);
    if (!session.sync) options += " --no-sync";
    if (session.anonymous) options += " --anonymous";
    return options;
}

}  // namespace velmora::cli
