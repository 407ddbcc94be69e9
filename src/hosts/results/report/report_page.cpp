// SPDX-License-Identifier: MIT
#include "hosts/results/report/report_page.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "gis/errors.h"
#include "gis/month_names.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "gis/zonal_tables.h"
#include "hosts/results/records/made_for.h"
#include "hosts/results/report/charts_section.h"
#include "hosts/results/report/efficiency_section.h"
#include "hosts/results/report/further_sections.h"
#include "hosts/results/report/html.h"
#include "hosts/results/report/inputs_section.h"
#include "hosts/results/report/made_of_section.h"
#include "hosts/results/report/maps_section.h"
#include "hosts/results/report/messages_section.h"
#include "hosts/results/report/page_head.h"
#include "hosts/results/report/quality_section.h"
#include "hosts/results/report/report_faults.h"
#include "hosts/results/report/station_map.h"
#include "hosts/results/report/tables_section.h"

namespace velmora {

namespace {

std::string heading(const std::string& id, const std::string& title) {
    return "<h2 id=\"" + id + "\">" + title + "</h2>\n";
}

// The unit is named where a reading begins.
std::vector<std::string> totalsHeads() {
    std::vector<std::string> heads = {"Zone"};
    for (const char* reading : {" (inches)", " (as the table)"}) {
        std::string unit = ", acre-feet";
        for (const Product* product : tabledProducts()) {
            heads.push_back(std::string(product->table.title) + std::exchange(unit, "") + reading);
        }
    }
    return heads;
}

// The tables of one page that speak of different periods.
std::string unlikeTables(const std::vector<MadeFor>& made) {
    std::string html = "<p class=\"error\">The tables were made for different periods:";
    for (const MadeFor& part : made) {
        html += " " + escaped(joinedNames(part.names) + " for " + part.text) + ".";
    }
    return html + "</p>\n";
}

std::string totalsSection(const RunResults& results) {
    const auto made = tablesMadeFor(results.records, results.settings);
    std::string html = heading(
        "totals",
        "Zone totals" + (made.size() == 1 ? ", " + escaped(made.front().text) : std::string()));
    if (made.size() > 1) html += unlikeTables(made);
    if (results.totals.empty()) {
        return html + "<p>There are no zone tables yet: run the steps cropet, nir and irr.</p>\n";
    }
    std::vector<std::vector<std::string>> rows;
    std::map<std::string, double> table;
    std::map<std::string, double> inches;
    const auto add = [&](const std::string& zone, const std::map<std::string, double>& a,
                         const std::map<std::string, double>& b) {
        rows.push_back({escaped(zone)});
        for (const auto& volumes : {b, a}) {
            for (const std::string& name : zoneTableNames()) {
                const auto found = volumes.find(name);
                rows.back().push_back(
                    found == volumes.end() ? "&ndash;" : fmt::format("{:.1f}", found->second));
            }
        }
    };
    for (const ZoneTotals& zone : results.totals) {
        add(zone.zone, zone.table, zone.inches);
        for (const auto& [name, volume] : zone.table) table[name] += volume;
        for (const auto& [name, volume] : zone.inches) inches[name] += volume;
    }
    add("All zones", table, inches);
    return html + unitNote() + "<div class=\"scroll\">" + htmlTable(totalsHeads(), rows, 1) +
           "</div>\n";
}

std::string stationsSection(IPlatform& platform, const RunResults& results,
                            std::vector<std::string>* missing) {
    std::string html = heading("stations", "Weather stations");
    try {
        return html + stationMap(platform, results.settings);
    } catch (const PlatformError& e) {
        if (missing)
            missing->push_back("The report has no map of the stations: " + std::string(e.what()));
        return html + "<p class=\"error\">No map: " + escaped(e.what()) + "</p>\n";
    }
}

// "a, b and c".
std::string inSentence(std::vector<std::string> names) {
    const std::string last = names.back();
    names.pop_back();
    return names.empty() ? last : joinedNames(names) + " and " + last;
}

std::string unitsSection(const RunSettings& settings) {
    std::vector<std::vector<std::string>> rows;
    for (const int month : settings.months()) {
        rows.push_back({GetMonthName(month),
                        std::to_string(zonalDaysOfMonth(month, settings.yearNumber())),
                        fmt::format("{:.4f}", tableOverInches(month, settings.yearNumber()))});
    }
    return heading("units", "What the units mean") +
           "<p>Reference ET, crop ET, precipitation and both requirements are depths of water in "
           "<b>inches per month</b>. A mean depth of 1 inch over 12 acres is 1 acre-foot: the "
           "depth "
           "in feet is the mean divided by 12, and the volume in acre-feet is that depth times the "
           "counted area in acres. Figures marked <b>inches</b> are made this way.</p>\n"
           "<p>The tables " +
           inSentence(zoneTableNames()) +
           " convert by a fixed rule that takes a grid's "
           "mean as <b>millimetres per day</b>: depth in feet = days of the month &times; mean / "
           "304.8. Figures marked <b>table</b> are the tables' own. For grids in inches per month "
           "they are days / 25.4 times the figures marked inches, so they overstate the water of a "
           "month of 31 days by 22 %. Use the figures marked inches for water depths and volumes, "
           "and the tables' own where earlier reports by the same rule are to be compared.</p>\n"
           "<p>An acre counts as 4047 m&sup2;. February has 29 days in every year that is a "
           "multiple of 4. <b>Polygon</b> acres are a zone polygon's own area, <b>cells</b> acres "
           "those of its cells with data.</p>\n" +
           htmlTable({"Month", "Days", "Table / inches"}, rows, 1);
}

}  // namespace

std::string reportPage(IPlatform& platform, const RunResults& results,
                       std::vector<std::string>* missing) {
    std::string html = pageHead(results) + "<main>\n";
    html += faultsBanner(results.faults) + totalsSection(results) +
            waterAccount(platform, results, missing) + chartsSection(results);
    SmallMaps maps(platform, results.settings, missing);
    html += mapsSection(platform, results, maps);
    html += qualitySection(platform, results, maps);
    html += tablesSection(results) + papersChoices(platform, results, missing) +
            stationsSection(platform, results, missing) + inputsSection(results) +
            madeOfSection(results) + efficiencySection(platform, results, missing) +
            messagesSection(results) + publishedFiguresSection(missing) +
            unitsSection(results.settings);
    return html + "</main></body></html>\n";
}

}  // namespace velmora
