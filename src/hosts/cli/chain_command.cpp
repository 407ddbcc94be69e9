// SPDX-License-Identifier: MIT
#include <fmt/core.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <numeric>
#include <optional>

#include "gis/errors.h"
#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/zone_results.h"
#include "hosts/components/step_names.h"
#include "platform/platform.h"
#include "settings/settings_file.h"

namespace velmora::cli {

namespace {

// What a step makes in the output folder, as the summary says it.
const std::map<std::string, std::string> kProducts = {
    {"refet", "RefET_<month>_<method>, GridOP.mdb"},
    {"kc", "Kc_<month>_<method>"},
    {"cropet", "ET_<month>_<method>, StatCET"},
    {"ppt", "PPT_<month>"},
    {"nir", "NIR_<month>, StatNIR"},
    {"eff", "Lu_Intersected, IREF"},
    {"irr", "IRR_<month>, StatIRR"}};

class Chain {
  public:
    Chain(const Session& session, const ChainOptions& options)
        : session_(session), options_(options) {
        const auto steps = stepNames();
        const auto first =
            options.from.empty() ? steps.begin() : std::ranges::find(steps, options.from);
        steps_.assign(first, steps.end());
        if (!options.only.empty()) steps_ = {options.only};
        // Whoever asks for default shares in every zone begins with empty tables.
        auto& efficiency = options_.efficiency;
        if (!efficiency.defaultShares.empty() && !efficiency.replaceTables) {
            efficiency.replaceTables = session.terminal.answer.value_or(true);
        }
    }

    int run() {
        for (const std::string& step : steps_) {
            if (!session_.terminal.quiet) {
                fmt::print("== {}\n", step);
                std::fflush(stdout);
            }
            if (!runOne(step)) {
                fmt::print(
                    "The chain stops at {}. Mend what its message says, then go on with:\n"
                    "  velmora run all --from {}{}\n",
                    step, step, sharesOptions());
                return kFailed;
            }
        }
        printSummary();
        return kDone;
    }

  private:
    bool runOne(const std::string& step) {
        const double began = clock().seconds();
        bool done = false;
        try {
            if (step == "eff") ensureIrrigationDatabase(session_, options_.efficiency);
            done = copyFor(step) &&
                   runStep(session_, step, diagnoses(step), options_.efficiency) == kDone;
        } catch (const PlatformError& e) {
            fmt::print("message: {}\n", oneLine(e.what()));
        }
        seconds_.emplace_back(step, clock().seconds() - began);
        return done;
    }

    // Only these make surfaces over stations.
    bool diagnoses(const std::string& step) const {
        return options_.diagnose && (step == "refet" || step == "ppt");
    }

    IClock& clock() { return platform_.clock(); }

    std::string sharesOptions() const {
        std::string text;
        if (!options_.efficiency.cvef.empty()) text += " --cvef " + options_.efficiency.cvef;
        if (!options_.efficiency.defaultShares.empty()) {
            text += " --default-shares " + options_.efficiency.defaultShares;
        }
        return text;
    }

    // The settings as they stand now, when they can be read; the steps say when they cannot.
    std::optional<RunSettings> settings() {
        const std::string path = defaultSettingsPath(session_.settingsFolder);
        if (!platform_.files().fileExists(path)) return std::nullopt;
        return readSettings(platform_.files(), path);
    }

    bool copyFor(const std::string& step) {
        const auto now = settings();
        if (!now) return true;
        const auto copyAll = [&](const std::string& maker, const std::vector<StepName>& names) {
            return std::ranges::all_of(names, [&](const StepName& name) {
                return copyMadeGrid(*now, maker, name.made, name.read);
            });
        };
        if (step == "cropet") return copyAll("kc", namesForCropEt(*now));
        if (step == "irr") return copyAll("eff", namesForIrrigationRequirement());
        return true;
    }

    // Copies a grid that this chain has made, or that stands for one that is missing.
    bool copyMadeGrid(const RunSettings& now, const std::string& maker, const std::string& from,
                      const std::string& to) {
        if (!platform_.files().folderExists(now.OutputWorkspace)) return true;
        const auto workspace = platform_.rasters().openFromFolder(now.OutputWorkspace);
        const bool made =
            std::ranges::find(seconds_, maker, &std::pair<std::string, double>::first) !=
            seconds_.end();
        if (!workspace->exists(from)) return true;  // the step says what it misses
        if (!made && workspace->exists(to)) {
            fmt::print("{} is used as it stands; velmora grid copy {} {} renews it\n", to, from,
                       to);
            return true;
        }
        return gridCopy(session_, joinedPath(now.OutputWorkspace, from), to) == kDone;
    }

    void printSummary() {
        const auto now = settings();
        if (!now) return;
        fmt::print("\nMade in {}\n", now->OutputWorkspace);
        for (const auto& [step, seconds] : seconds_) {
            fmt::print("  {:<8}{:>8.2f} s  {}\n", step, seconds, kProducts.at(step));
        }
        const double all =
            std::accumulate(seconds_.begin(), seconds_.end(), 0.0,
                            [](double sum, const auto& entry) { return sum + entry.second; });
        fmt::print("  {:<8}{:>8.2f} s\n", "all", all);
        printTotals(*now);
    }

    void printTotals(const RunSettings& now) {
        const std::vector<std::string> tables = {"StatCET", "StatNIR", "StatIRR"};
        const auto totals = zoneTotals(platform_, now.OutputWorkspace, tables, now.yearNumber());
        if (totals.empty()) return;
        fmt::print(
            "\nZone totals, acre-feet, {} to {}: as the tables take them (a grid's mean as "
            "mm per day), and as inches per month, the grids' own unit\n",
            now.BeginMonth, now.EndMonth);
        fmt::print("{:<26}{:>14}{:>14}{:>14}{:>16}{:>12}{:>12}\n", "zone", "StatCET", "StatNIR",
                   "StatIRR", "inches: crop ET", "net irr.", "irrigation");
        std::map<std::string, double> table;
        std::map<std::string, double> inches;
        const auto line = [&](const std::string& zone, std::map<std::string, double> a,
                              std::map<std::string, double> b) {
            fmt::print("{:<26}{:>14.1f}{:>14.1f}{:>14.1f}{:>16.1f}{:>12.1f}{:>12.1f}\n", zone,
                       a["StatCET"], a["StatNIR"], a["StatIRR"], b["StatCET"], b["StatNIR"],
                       b["StatIRR"]);
        };
        for (const ZoneTotals& zone : totals) {
            line(zone.zone, zone.table, zone.inches);
            for (const auto& [name, volume] : zone.table) table[name] += volume;
            for (const auto& [name, volume] : zone.inches) inches[name] += volume;
        }
        line("all zones", table, inches);
    }

    const Session& session_;
    ChainOptions options_;
    platform::Platform platform_;
    std::vector<std::string> steps_;
    std::vector<std::pair<std::string, double>> seconds_;  // of the steps done, in order
};

}  // namespace

int runAll(const Session& session, const ChainOptions& options) {
    return Chain(session, options).run();
}

}  // namespace velmora::cli
