// SPDX-License-Identifier: MIT
#include "hosts/cli/chain_summary.h"

#include <map>
#include <numeric>

#include "gis/text.h"
#include "hosts/cli/console.h"
#include "hosts/results/records/made_for.h"
#include "hosts/results/zone_results.h"
#include "modelling/products.h"

namespace velmora::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kInches = "inches: ";

// What a step leaves in the output folder, as the summary says it.
std::string madeBy(const std::string& step) {
    const Product& product = productMadeBy(step);
    std::vector<std::string> names = {std::string(product.onTheWay), namePattern(product.made),
                                      std::string(product.table.name), std::string(product.beside)};
    std::erase(names, "");
    return joinedNames(names);
}

bool hasMonths(const RunSettings& settings) { return !settings.months().empty(); }

double allSeconds(const std::vector<StepResult>& results) {
    return std::accumulate(
        results.begin(), results.end(), 0.0,
        [](double sum, const StepResult& result) { return sum + result.seconds; });
}

// "-" where a table has no value.
std::string figure(const std::map<std::string, double>& volumes, const std::string& table,
                   int width) {
    const auto found = volumes.find(table);
    return found == volumes.end() ? fmt::format("{:>{}}", "-", width)
                                  : fmt::format("{:>{}.1f}", found->second, width);
}

// The columns of inches are narrow, but for the first one, whose head says what they are.
int widthAfter(const std::string& prefix) { return prefix.empty() ? 12 : 16; }

std::string heads() {
    std::string line = fmt::format("{:<26}", "zone");
    for (const std::string& table : zoneTableNames()) line += fmt::format("{:>14}", table);
    std::string prefix = kInches;
    for (const Product* product : tabledProducts()) {
        line +=
            fmt::format("{:>{}}", prefix + std::string(product->table.column), widthAfter(prefix));
        prefix.clear();
    }
    return line;
}

void printLine(const ZoneTotals& totals) {
    std::string line = fmt::format("{:<26}", oneLine(totals.zone));
    for (const std::string& table : zoneTableNames()) line += figure(totals.table, table, 14);
    std::string prefix = kInches;
    for (const std::string& table : zoneTableNames()) {
        line += figure(totals.inches, table, widthAfter(prefix));
        prefix.clear();
    }
    print("{}\n", line);
}

ZoneTotals sumOf(const std::vector<ZoneTotals>& totals) {
    ZoneTotals all{"all zones", {}, {}};
    for (const ZoneTotals& zone : totals) {
        for (const auto& [name, volume] : zone.table) all.table[name] += volume;
        for (const auto& [name, volume] : zone.inches) all.inches[name] += volume;
    }
    return all;
}

std::vector<ZoneTotals> totalsOf(IPlatform& platform, const RunSettings& settings,
                                 const RunRecords& records) {
    return zoneTotals(platform, settings.OutputWorkspace, zoneTableScopes(records, settings));
}

// What the tables of the totals were made for, which need not be today's settings.
std::string madeFor(const RunRecords& records, const RunSettings& settings) {
    const std::vector<MadeFor> made = tablesMadeFor(records, settings);
    if (made.size() == 1) return made.front().text;
    std::string text;
    for (const MadeFor& part : made) {
        text += (text.empty() ? "" : "; ") + joinedNames(part.names) + " " + part.text;
    }
    return text;
}

void printTotals(IPlatform& platform, const RunSettings& settings) {
    const RunRecords records = readRunRecords(settings.OutputWorkspace);
    const auto totals = totalsOf(platform, settings, records);
    if (totals.empty()) return;
    print(
        "\nZone totals, acre-feet, {}: as the tables take them (a grid's mean as "
        "mm per day), and as inches per month, the grids' own unit\n",
        oneLine(madeFor(records, settings)));
    print("{}\n", heads());
    for (const ZoneTotals& zone : totals) printLine(zone);
    printLine(sumOf(totals));
}

Json totalsJson(const ZoneTotals& totals) {
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

// Period and year of each table.
Json tablesJson(const RunRecords& records, const RunSettings& settings) {
    Json json = Json::object();
    for (const Product* product : tabledProducts()) {
        const RunSettings& made = records.settingsOf(product->maker, settings);
        json[std::string(product->table.name)] = {{"beginMonth", made.BeginMonth},
                                                  {"endMonth", made.EndMonth},
                                                  {"year", made.Year},
                                                  {"method", made.RefETMethod}};
    }
    return json;
}

}  // namespace

void printSummary(IPlatform& platform, const RunSettings& settings,
                  const std::vector<StepResult>& results) {
    const bool months = hasMonths(settings);
    if (months) {
        print("\nMade in {}\n", settings.OutputWorkspace);
    } else {
        print("\nNo grids of months are made in {}: the period begins in {} and ends in {}\n",
              settings.OutputWorkspace, settings.BeginMonth, settings.EndMonth);
    }
    for (const StepResult& result : results) {
        print("  {:<8}{:>8.2f} s  {}\n", result.step, result.seconds,
              months ? madeBy(result.step) : std::string());
    }
    print("  {:<8}{:>8.2f} s\n", "all", allSeconds(results));
    if (months) printTotals(platform, settings);
}

void printSummaryJson(IPlatform& platform, const std::optional<RunSettings>& settings,
                      const std::vector<StepResult>& results, const std::string& stoppedAt,
                      const std::string& goOnWith) {
    Json json = {{"done", stoppedAt.empty()}, {"seconds", allSeconds(results)}};
    json["steps"] = Json::array();
    for (const StepResult& result : results) json["steps"].push_back(jsonOf(result));
    if (!stoppedAt.empty()) {
        json["stoppedAt"] = stoppedAt;
        json["goOnWith"] = goOnWith;
    }
    if (settings) {
        json["outputFolder"] = settings->OutputWorkspace;
        json["beginMonth"] = settings->BeginMonth;
        json["endMonth"] = settings->EndMonth;
        json["zoneTotalsAcreFeet"] = Json::array();
        if (hasMonths(*settings)) {
            const RunRecords records = readRunRecords(settings->OutputWorkspace);
            for (const ZoneTotals& zone : totalsOf(platform, *settings, records)) {
                json["zoneTotalsAcreFeet"].push_back(totalsJson(zone));
            }
            json["zoneTablesMadeFor"] = tablesJson(records, *settings);
        }
    }
    printJson(json);
}

}  // namespace velmora::cli
