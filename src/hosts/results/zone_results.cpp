// SPDX-License-Identifier: MIT
#include "hosts/results/zone_results.h"

#include <algorithm>

#include "gis/text.h"
#include "gis/units.h"
#include "gis/zonal_tables.h"

namespace velmora {

namespace {

double numberIn(const ITable& table, std::size_t record, const std::string& field) {
    const FieldValue value = table.value(record, field);
    const auto* number = std::get_if<double>(&value);
    return number ? *number : 0;
}

}  // namespace

std::vector<ZoneMonth> zoneMonths(IPlatform& platform, const std::string& outputFolder,
                                  const std::string& table) {
    std::vector<ZoneMonth> rows;
    const std::string path = joinedPath(outputFolder, table + ".dbf");
    if (!platform.files().fileExists(path)) return rows;
    const auto file = platform.features().openTable(path);
    const std::string tag = table.substr(table.size() - 3);
    for (std::size_t r = 0; r < file->recordCount(); ++r) {
        rows.push_back({keyText(file->value(r, "ZoneUnit")),
                        static_cast<int>(numberIn(*file, r, "Month")),
                        numberIn(*file, r, "Area_T_ac"), numberIn(*file, r, "Area_C_ac"),
                        numberIn(*file, r, tag + "_D_ft"), numberIn(*file, r, tag + "_V_acft")});
    }
    return rows;
}

double tableOverInches(int month, int year) {
    return zonalDaysOfMonth(month, year) / kMillimetresPerInch;
}

std::string zoneTableReading() { return "millimetres per day"; }

std::string zoneTableNote(const std::string& table) {
    return table + " takes a grid's mean as " + zoneTableReading() +
           ", but the grids are inches per month: its depths and volumes are days / 25.4 times as "
           "large as those of the grids (22 % more in a month of 31 days), which velmora account "
           "gives";
}

bool ZoneTableScope::holds(const ZoneMonth& row) const {
    return std::ranges::find(months, row.month) != months.end();
}

std::vector<ZoneTotals> zoneTotals(IPlatform& platform, const std::string& outputFolder,
                                   const std::vector<ZoneTableScope>& tables) {
    std::vector<ZoneTotals> totals;
    for (const ZoneTableScope& scope : tables) {
        const std::string& table = scope.table;
        for (const ZoneMonth& row : zoneMonths(platform, outputFolder, table)) {
            if (!scope.holds(row)) continue;
            auto found = std::ranges::find(totals, row.zone, &ZoneTotals::zone);
            if (found == totals.end()) found = totals.insert(totals.end(), {row.zone, {}, {}});
            found->table[table] += row.acreFeet;
            const double ratio = tableOverInches(row.month, scope.year);
            found->inches[table] += ratio > 0 ? row.acreFeet / ratio : 0;
        }
    }
    return totals;
}

}  // namespace velmora
