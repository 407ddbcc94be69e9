// SPDX-License-Identifier: MIT
#include "hosts/results/report/tables_section.h"

#include <fmt/format.h>

#include <algorithm>

#include "gis/month_names.h"
#include "gis/text.h"
#include "gis/units.h"
#include "hosts/results/records/made_for.h"
#include "hosts/results/report/html.h"

namespace velmora {

namespace {

// The zones behind a key of the tables, which hold its first 25 characters.
struct TableZone {
    std::vector<std::string> names;
    double acres = 0;  // of all polygons
};
using TableZones = std::map<std::string, TableZone>;

TableZones zonesOf(const RunResults& results) {
    TableZones zones;
    if (!results.account) return zones;
    for (const AccountZone& zone : results.account->zones) {
        TableZone& entry = zones[zone.keyInTables];
        entry.names.push_back(zone.key);
        entry.acres += zone.squareMetres / kSquareMetresPerAcre;
    }
    return zones;
}

std::string warning(const std::string& text) {
    return "<p class=\"error\">" + escaped(text) + "</p>\n";
}

std::string sharedKeys(const TableZones& zones) {
    std::string html;
    for (const auto& [key, zone] : zones) {
        if (zone.names.size() < 2) continue;
        html += warning("The tables cannot tell these zones apart, whose keys begin alike: " +
                        joinedNames(zone.names) + ". Rows under \"" + key +
                        "\" are of any of them; the water account has "
                        "each by itself.");
    }
    return html;
}

std::string zonesWithoutRow(const TableZones& zones, const std::vector<ZoneMonth>& rows) {
    std::vector<std::string> names;
    for (const auto& [key, zone] : zones) {
        if (std::ranges::find(rows, key, &ZoneMonth::zone) != rows.end()) continue;
        names.insert(names.end(), zone.names.begin(), zone.names.end());
    }
    return names.empty() ? std::string()
                         : warning("Zones without a row, since no cell of theirs has data: " +
                                   joinedNames(names));
}

struct Areas {
    double polygon = 0;
    bool exceeded = false;  // more acres of cells than the polygons have
};

Areas areasOf(const TableZones& zones, const ZoneMonth& row) {
    const auto found = zones.find(row.zone);
    const double acres = found == zones.end() ? row.totalAcres : found->second.acres;
    return {acres, row.countedAcres > acres};
}

std::vector<std::string> cellsOf(const ZoneMonth& m, const Areas& areas, double ratio) {
    const std::string counted = fmt::format("{:.1f}", m.countedAcres);
    return {escaped(m.zone),
            GetMonthName(m.month),
            fmt::format("{:.1f}", areas.polygon),
            areas.exceeded ? "<span class=\"error\">" + counted + "</span>" : counted,
            fmt::format("{:.4f}", m.depthFeet / ratio),
            fmt::format("{:.1f}", m.acreFeet / ratio),
            fmt::format("{:.4f}", m.depthFeet),
            fmt::format("{:.1f}", m.acreFeet),
            fmt::format("{:.4f}", ratio)};
}

std::string tableRows(const std::vector<ZoneMonth>& months, const TableZones& zones, int year) {
    std::vector<std::vector<std::string>> rows;
    std::vector<std::string> exceeded;
    for (const ZoneMonth& m : months) {
        const Areas areas = areasOf(zones, m);
        rows.push_back(cellsOf(m, areas, tableOverInches(m.month, year)));
        if (areas.exceeded && std::ranges::find(exceeded, m.zone) == exceeded.end()) {
            exceeded.push_back(m.zone);
        }
    }
    std::string html;
    if (!exceeded.empty()) {
        html = warning("More acres of cells than the polygon has: " + joinedNames(exceeded));
    }
    return html +
           folded(counted(rows.size(), "row"),
                  htmlTable({"Zone", "Month", "Polygon, acres", "Cells, acres",
                             "Depth, ft (inches)", "Volume, acre-ft (inches)", "Depth, ft (table)",
                             "Volume, acre-ft (table)", "Table / inches"},
                            rows, 2));
}

std::string tableOf(const RunResults& results, const Product& product, const TableZones& zones) {
    const std::string table(product.table.name);
    const RunSettings& made = results.settingsOf(product);
    std::string html =
        fmt::format("<h3>{} ({}), {}</h3>\n", product.title, table, escaped(periodText(made)));
    if (const std::size_t strange = results.strangeRows.at(table); strange > 0) {
        html +=
            warning(counted(strange, "row") + " of other months left out: the run was made for " +
                    periodText(made) + ".");
    }
    const auto& months = results.tables.at(table);
    if (months.empty()) return html + "<p>No rows.</p>\n";
    return html + zonesWithoutRow(zones, months) + tableRows(months, zones, made.yearNumber());
}

}  // namespace

std::string unitNote() {
    return "<p class=\"note\">The zone tables take a grid's mean as millimetres per day. The grids "
           "of this run are inches per month. Both readings are given; <a href=\"#units\">what the "
           "units mean</a> says how they are related.</p>\n";
}

std::string tablesSection(const RunResults& results) {
    const TableZones zones = zonesOf(results);
    std::string html = "<h2 id=\"tables\">Zone tables</h2>\n" + unitNote();
    if (!results.account) {
        html +=
            "<p class=\"note\">Polygon acres are as the tables hold them, which is another "
            "zone's area once a zone before it has no row.</p>\n";
    }
    html += sharedKeys(zones);
    for (const Product* product : tabledProducts()) html += tableOf(results, *product, zones);
    return html;
}

}  // namespace velmora
