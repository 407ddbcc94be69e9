// SPDX-License-Identifier: MIT
#include "tests/faults/judge.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "tests/faults/database_text.h"
#include "tests/faults/dbase_text.h"

namespace velmora::faults {

namespace {

const std::set<std::string> kWorkingFields = {"TempTTT", "RefPPT"};
const std::string kEfficiencyField = "IREF";  // of the pieces, filled in after they are made

Contents merged(Contents all, const Contents& more) {
    all.insert(more.begin(), more.end());
    return all;
}

const std::string* find(const Contents& all, const std::string& path) {
    const auto found = all.find(path);
    return found == all.end() ? nullptr : &found->second;
}

bool sameBytes(const std::string& path, const Contents& a, const Contents& b) {
    const std::string* inA = find(a, path);
    const std::string* inB = find(b, path);
    return inA && inB && *inA == *inB;
}

// What the step may change; all else in the project was given by the user.
bool isProduct(const Undisturbed& step, const std::string& path) {
    if (path.starts_with("output/") || path == "IrDB.mdb" || path == "SumCrop.dbf") return true;
    if (path == "settings/Zav.inf") return !sameBytes(path, step.before, step.after);
    return !step.before.contains(path);
}

// A copy that is kept of a replaced database; its name tells the time.
bool isKeptCopy(const std::string& path) { return path.starts_with("made_"); }

// A file that the user gave, and that no step may change.
void judgeInput(const std::string& path, const Undisturbed& step, const Contents& now,
                Complaints& wrong) {
    if (sameBytes(path, step.before, now)) return;
    const std::string* is = find(now, path);
    if (!is) {
        wrong.push_back("input lost: " + path);
    } else if (path != "stations.dbf" || !sameBut(kWorkingFields, step.before.at(path), *is)) {
        wrong.push_back("input changed: " + path);
    }
}

// Tables of a database that the step does not fill are the user's.
bool keepsUsersTables(const std::string& path, const Undisturbed& step, const Contents& now,
                      const std::string& folder) {
    const DatabaseText old = databaseText(path, step.before, folder);
    const DatabaseText made = databaseText(path, step.after, folder);
    const DatabaseText is = databaseText(path, now, folder);
    return is.whole && std::ranges::all_of(old.tables, [&](const auto& table) {
               const auto& [name, rows] = table;
               const auto found = is.tables.find(name);
               const auto filled = made.tables.find(name);
               if (filled == made.tables.end() || filled->second != rows) return true;
               return found != is.tables.end() && found->second == rows;
           });
}

// A grid's part of the right size: the statistics of no cells, or tiles in which no cell has data.
bool isGridPartWithoutData(const std::string& path, const std::string& bytes,
                           const std::string& whole) {
    if (bytes.size() != whole.size()) return false;
    if (path.ends_with("/sta.adf")) return true;
    if (!path.ends_with("/w001001.adf")) return false;
    const std::string noData = "\xff\x7f\xff\xff";
    std::size_t others = 0;  // the file's head and the lengths of its tiles
    for (std::size_t at = 0; at < bytes.size();) {
        const bool without = bytes.compare(at, noData.size(), noData) == 0;
        others += without ? 0 : 1;
        at += without ? noData.size() : 1;
    }
    return others <= 100 + bytes.size() / 1000;
}

// A file that is neither as before nor as it should be: whether a run that ended early may leave it
// so.
bool mayBeBetween(const std::string& path, const Undisturbed& step, const Contents& now,
                  const std::string& folder) {
    const std::string& bytes = now.at(path);
    if (path == "output/GridOP.mdb") return databaseText(path, now, folder).whole;
    if (path == "IrDB.mdb") return keepsUsersTables(path, step, now, folder);
    if (path == "output/velmora_runs.json") {
        return nlohmann::json::parse(bytes, nullptr, false).is_array();
    }
    if (path.starts_with("output/velmora_record_")) {
        const auto record = nlohmann::json::parse(bytes, nullptr, false);
        return record.is_object() && record.value("state", "complete") != "complete";
    }
    // The page says itself what it could not show.
    if (path == "output/report.html") return bytes.ends_with("</html>\n");
    const std::string* whole = find(step.after, path);
    // A month whose weather cannot be read has no data.
    if (path.starts_with("output/RefET_"))
        return whole && isGridPartWithoutData(path, bytes, *whole);
    if (path == "output/Lu_Intersected.dbf") {
        return whole && sameBut({kEfficiencyField}, bytes, *whole);
    }
    if (path.starts_with("output/velmora_made_")) {
        return whole && comparable(path, *whole).starts_with(comparable(path, bytes));
    }
    return path.starts_with("output/Stat") && whole && holdsRecordsOf(bytes, *whole);
}

using Dataset = std::vector<std::string>;  // paths

// A dataset of which some files are neither old nor new.
bool mayBeBetween(const Dataset& dataset, const Undisturbed& step, const Contents& now,
                  const std::string& folder) {
    return std::ranges::all_of(dataset, [&](const std::string& path) {
        return same(path, step.after, now, folder) ||
               (now.contains(path) && mayBeBetween(path, step, now, folder));
    });
}

bool sameAs(const Contents& all, const Dataset& dataset, const Contents& now,
            const std::string& folder) {
    return std::ranges::all_of(
        dataset, [&](const std::string& path) { return same(path, all, now, folder); });
}

// Which of its files are old, new, missing or neither.
std::string statesOf(const Dataset& dataset, const Undisturbed& step, const Contents& now,
                     const std::string& folder) {
    std::string text;
    for (const std::string& path : dataset) {
        const char* state = same(path, step.after, now, folder)    ? "new"
                            : same(path, step.before, now, folder) ? "old"
                            : now.contains(path)                   ? "neither"
                                                                   : "missing";
        text += (text.empty() ? " (" : ", ") + path.substr(path.rfind('/') + 1) + " " + state;
    }
    return text + ")";
}

void judgeDataset(const std::string& name, const Dataset& dataset, const Undisturbed& step,
                  const Contents& now, const std::string& folder, Complaints& wrong) {
    if (sameAs(step.after, dataset, now, folder) || sameAs(step.before, dataset, now, folder))
        return;
    const auto inAny = [&](const Contents& all) {
        return std::ranges::any_of(dataset, [&](const auto& path) { return all.contains(path); });
    };
    const bool isShapefile = name.ends_with(".shp");
    if (isShapefile ? !now.contains(name) : !inAny(now)) {
        const bool goesFirst = name == "output/Lu_Intersected.shp";  // before it is made anew
        if (inAny(step.before) && !goesFirst) wrong.push_back("old dataset lost: " + name);
        return;  // what stands beside an absent .shp is no shapefile
    }
    if (!inAny(step.before) && !inAny(step.after)) {
        if (!name.ends_with("-journal")) wrong.push_back("nobody made: " + name);
        return;
    }
    if (mayBeBetween(dataset, step, now, folder)) return;
    wrong.push_back("broken under its final name: " + name + statesOf(dataset, step, now, folder));
}

void judgeDatasets(const Undisturbed& step, const Contents& now, const std::string& folder,
                   Complaints& wrong) {
    const Contents all = merged(merged(step.before, step.after), now);
    std::map<std::string, Dataset> datasets;
    for (const auto& [path, bytes] : all) {
        if (isUnfinished(path) || isKeptCopy(path)) continue;
        if (!isProduct(step, path)) {
            judgeInput(path, step, now, wrong);
        } else {
            datasets[datasetOf(path, all)].push_back(path);
        }
    }
    for (const auto& [name, dataset] : datasets) {
        judgeDataset(name, dataset, step, now, folder, wrong);
    }
}

// Lines that say the same in every run say nothing about a failure.
bool givesReason(const std::string& errors, const std::string& usual) {
    std::istringstream lines(errors);
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && usual.find(line) == std::string::npos &&
            !line.starts_with("message: Time for ")) {
            return true;
        }
    }
    return false;
}

// Everything that is not as the undisturbed run leaves it.
void judgeAgainstUndisturbed(const std::string& when, const Undisturbed& step, const Contents& now,
                             const std::string& folder, Complaints& wrong) {
    for (const auto& [path, bytes] : merged(step.after, now)) {
        if (isUnfinished(path) || isKeptCopy(path) || same(path, step.after, now, folder)) continue;
        const std::string* is = find(now, path);
        const std::string state = !is                                    ? "missing"
                                  : !step.after.contains(path)           ? "too much"
                                  : same(path, step.before, now, folder) ? "not made anew"
                                                                         : "different";
        wrong.push_back(when + " but a file is " + state + ": " + path);
    }
}

}  // namespace

Complaints judgeFault(const Undisturbed& step, const Ending& ending, bool killed,
                      const Contents& now, const std::string& folder) {
    Complaints wrong;
    if (ending.hung) wrong.emplace_back("it hangs:");
    const bool byFault = killed && ending.reached;
    if (ending.signal != 0 && !byFault && !ending.hung) {
        wrong.push_back("ended by a signal: " + std::to_string(ending.signal));
    }
    if (ending.status > 0 && !givesReason(ending.errors, step.errors)) {
        wrong.push_back("no reason on standard error: status " + std::to_string(ending.status));
    }
    if (ending.status == 0) {
        Contents results = now;
        // A note on standard error stands among the run's notes as well.
        const std::string runs = "output/velmora_runs.json";
        if (givesReason(ending.errors, step.errors) && now.contains(runs) &&
            step.after.contains(runs) && sameRuns(now.at(runs), step.after.at(runs))) {
            results[runs] = step.after.at(runs);
        }
        judgeAgainstUndisturbed("status 0", step, results, folder, wrong);
    }
    if (ending.status != 0) judgeDatasets(step, now, folder, wrong);
    return wrong;
}

Complaints judgeNextRun(const Undisturbed& step, const Ending& ending, const Contents& now,
                        const std::string& folder) {
    Complaints wrong;
    if (ending.status != 0) {
        wrong.push_back("next run fails: status " + std::to_string(ending.status) + " " +
                        ending.errors);
    }
    Contents results = now;  // what it tells depends on what the failed one had done
    const auto notes = step.after.find("output/velmora_runs.json");
    if (notes != step.after.end()) results[notes->first] = notes->second;
    judgeAgainstUndisturbed("next run", step, results, folder, wrong);
    for (const auto& [path, bytes] : now) {
        if (isUnfinished(path)) wrong.push_back("left over after the next run: " + path);
    }
    return wrong;
}

}  // namespace velmora::faults
