// SPDX-License-Identifier: MIT
#include <algorithm>
#include <map>
#include <numeric>
#include <optional>

#include "gis/errors.h"
#include "gis/text.h"
#include "hosts/chain/copies.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/console.h"
#include "hosts/cli/step_run.h"
#include "hosts/results/zone_results.h"
#include "modelling/old_results.h"
#include "modelling/products.h"
#include "platform/platform.h"
#include "settings/settings_file.h"

namespace velmora::cli {

namespace {

using Json = nlohmann::ordered_json;

// What a step leaves in the output folder, as the summary says it.
std::string madeBy(const std::string& step) {
    const Product& product = productMadeBy(step);
    std::vector<std::string> names = {std::string(product.onTheWay), namePattern(product.made),
                                      std::string(product.table.name), std::string(product.beside)};
    std::erase(names, "");
    return joinedNames(names);
}

constexpr const char* kInches = "inches: ";

class Chain {
  public:
    Chain(const Session& session, const ChainOptions& options)
        : session_(session), options_(options) {
        const auto steps = stepNames();
        const auto first =
            options.from.empty() ? steps.begin() : std::ranges::find(steps, options.from);
        steps_.assign(first, steps.end());
        if (!options.only.empty()) steps_ = {options.only};
    }

    int run() {
        std::string stoppedAt;
        for (const std::string& step : steps_) {
            if (!session_.terminal.quiet) tell("== {}\n", step);
            results_.push_back(runOne(step));
            if (results_.back().done) continue;
            stoppedAt = step;
            tell("The chain stops at {}. Mend what its message says, then go on with:\n  {}\n",
                 step, goOnWith(step));
            break;
        }
        if (session_.json) {
            printSummaryJson(stoppedAt);
        } else if (stoppedAt.empty()) {
            printSummary();
        }
        return stoppedAt.empty() ? kDone : kFailed;
    }

  private:
    StepResult runOne(const std::string& step) {
        const double began = platform_.clock().seconds();
        StepResult result;
        result.step = step;
        try {
            if (step == "eff") ensureIrrigationDatabase(session_, options_.efficiency);
            copyFor(step);
            refuseOld(step);
            result = carryOut(session_, step, diagnoses(step), options_.efficiency);
        } catch (const PlatformError& e) {
            tellError(result, e.what());
        }
        result.seconds = platform_.clock().seconds() - began;
        return result;
    }

    // Only these make surfaces over stations.
    bool diagnoses(const std::string& step) const {
        return options_.diagnose && productMadeBy(step).overStations;
    }

    // The command line that goes on where the chain stopped, with all of its options.
    std::string goOnWith(const std::string& step) const {
        std::string line = "velmora" + repeatedOptions(session_) + " run all" +
                           (options_.only.empty() ? " --from " : " --only ") + step;
        const EfficiencyOptions& efficiency = options_.efficiency;
        for (const auto& [option, value] :
             {std::pair{" --database ", wholePath(efficiency.database)},
              {" --cvef ", efficiency.cvef},
              {" --default-shares ", efficiency.defaultShares}}) {
            if (!value.empty()) line += option + shellWord(value);
        }
        if (efficiency.overwriteShares) line += " --overwrite-shares";
        if (options_.diagnose) line += " --diagnose";
        if (options_.useOld) line += " --use-old";
        return line;
    }

    // The settings as they stand now, when they can be read; the steps say when they cannot.
    std::optional<RunSettings> settings() {
        const std::string path = defaultSettingsPath(session_.settingsFolder);
        if (!platform_.files().fileExists(path)) return std::nullopt;
        return readSettings(platform_.files(), path);
    }

    void copyFor(const std::string& step) {
        const auto now = settings();
        if (!now) return;
        std::vector<std::string> makers;
        for (const StepResult& result : results_) makers.push_back(result.step);
        for (const GridCopy& copy : copiesReadBy(platform_, *now, step, makers)) {
            const auto& [made, read] = copy.names;
            if (copy.isKept()) {
                tell("note: {} is used as it stands; velmora{} grid copy {} {} renews it\n", read,
                     repeatedOptions(session_), made, read);
            }
            if (copy.isDue()) gridCopy(session_, joinedPath(now->OutputWorkspace, made), read);
        }
    }

    // What the step would read though it is old: grids of earlier runs, and for the efficiencies
    // the copy of an Access file that has changed.
    std::vector<std::string> oldInputsOf(const std::string& step, const RunSettings& now) {
        if (step != "eff") return oldInputs(platform_, now, step);
        const std::string database = irrigationDatabaseOf(now, options_.efficiency);
        if (!platform_.files().fileExists(database)) return {};
        const std::string stale = platform_.connections().staleCopy(database);
        return stale.empty() ? std::vector<std::string>() : std::vector{stale};
    }

    void refuseOld(const std::string& step) {
        const auto now = settings();
        if (!now || options_.useOld) return;
        const std::vector<std::string> old = oldInputsOf(step, *now);
        if (old.empty()) return;
        for (const std::string& sentence : old) tell("note: {}\n", oneLine(sentence));
        throw PlatformError("The step would read what is old (" + counted(std::ssize(old), "note") +
                            " above): run the steps that make it first, or say --use-old");
    }

    static bool hasMonths(const RunSettings& now) { return !now.months().empty(); }

    double allSeconds() const {
        return std::accumulate(
            results_.begin(), results_.end(), 0.0,
            [](double sum, const StepResult& result) { return sum + result.seconds; });
    }

    void printSummary() {
        const auto now = settings();
        if (!now) return;
        if (hasMonths(*now)) {
            print("\nMade in {}\n", now->OutputWorkspace);
        } else {
            print("\nNo grids of months are made in {}: the period begins in {} and ends in {}\n",
                  now->OutputWorkspace, now->BeginMonth, now->EndMonth);
        }
        for (const StepResult& result : results_) {
            print("  {:<8}{:>8.2f} s  {}\n", result.step, result.seconds,
                  hasMonths(*now) ? madeBy(result.step) : std::string());
        }
        print("  {:<8}{:>8.2f} s\n", "all", allSeconds());
        if (hasMonths(*now)) printTotals(*now);
    }

    // "-" where a table has no value.
    static std::string figure(const std::map<std::string, double>& volumes,
                              const std::string& table, int width) {
        const auto found = volumes.find(table);
        return found == volumes.end() ? fmt::format("{:>{}}", "-", width)
                                      : fmt::format("{:>{}.1f}", found->second, width);
    }

    // The columns of inches are narrow, but for the first one, whose head says what they are.
    static int widthAfter(const std::string& prefix) { return prefix.empty() ? 12 : 16; }

    static std::string heads() {
        std::string line = fmt::format("{:<26}", "zone");
        for (const std::string& table : zoneTableNames()) line += fmt::format("{:>14}", table);
        std::string prefix = kInches;
        for (const Product* product : tabledProducts()) {
            line += fmt::format("{:>{}}", prefix + std::string(product->table.column),
                                widthAfter(prefix));
            prefix.clear();
        }
        return line;
    }

    static void printLine(const ZoneTotals& totals) {
        std::string line = fmt::format("{:<26}", oneLine(totals.zone));
        for (const std::string& table : zoneTableNames()) line += figure(totals.table, table, 14);
        std::string prefix = kInches;
        for (const std::string& table : zoneTableNames()) {
            line += figure(totals.inches, table, widthAfter(prefix));
            prefix.clear();
        }
        print("{}\n", line);
    }

    static ZoneTotals sumOf(const std::vector<ZoneTotals>& totals) {
        ZoneTotals all{"all zones", {}, {}};
        for (const ZoneTotals& zone : totals) {
            for (const auto& [name, volume] : zone.table) all.table[name] += volume;
            for (const auto& [name, volume] : zone.inches) all.inches[name] += volume;
        }
        return all;
    }

    std::vector<ZoneTotals> totalsOf(const RunSettings& now) {
        return zoneTotals(platform_, now.OutputWorkspace, zoneTableNames(), now.yearNumber());
    }

    void printTotals(const RunSettings& now) {
        const auto totals = totalsOf(now);
        if (totals.empty()) return;
        print(
            "\nZone totals, acre-feet, {} to {}: as the tables take them (a grid's mean as "
            "mm per day), and as inches per month, the grids' own unit\n",
            now.BeginMonth, now.EndMonth);
        print("{}\n", heads());
        for (const ZoneTotals& zone : totals) printLine(zone);
        printLine(sumOf(totals));
    }

    static Json totalsJson(const ZoneTotals& totals) {
        Json json = {{"zone", totals.zone}};
        for (const auto& [key, volumes] :
             {std::pair{"asTables", &totals.table}, {"asInches", &totals.inches}}) {
            for (const std::string& table : zoneTableNames()) {
                const auto found = volumes->find(table);
                json[key][table] = found == volumes->end() ? Json() : Json(found->second);
            }
        }
        return json;
    }

    void printSummaryJson(const std::string& stoppedAt) {
        Json json = {{"done", stoppedAt.empty()}, {"seconds", allSeconds()}};
        json["steps"] = Json::array();
        for (const StepResult& result : results_) json["steps"].push_back(jsonOf(result));
        if (!stoppedAt.empty()) {
            json["stoppedAt"] = stoppedAt;
            json["goOnWith"] = goOnWith(stoppedAt);
        }
        const auto now = stoppedAt.empty() ? settings() : std::nullopt;
        if (now) {
            json["outputFolder"] = now->OutputWorkspace;
            json["beginMonth"] = now->BeginMonth;
            json["endMonth"] = now->EndMonth;
            json["zoneTotalsAcreFeet"] = Json::array();
            if (hasMonths(*now)) {
                for (const ZoneTotals& zone : totalsOf(*now)) {
                    json["zoneTotalsAcreFeet"].push_back(totalsJson(zone));
                }
            }
        }
        printJson(json);
    }

    const Session& session_;
    ChainOptions options_;
    platform::Platform platform_;
    std::vector<std::string> steps_;
    std::vector<StepResult> results_;  // of the steps so far, in order
};

}  // namespace

int runAll(const Session& session, const ChainOptions& options) {
    return Chain(session, options).run();
}

}  // namespace velmora::cli
