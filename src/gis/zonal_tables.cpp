// SPDX-License-Identifier: MIT
#include "gis/zonal_tables.h"

#include <algorithm>
#include <array>
#include <exception>
#include <set>
#include <utility>
#include <vector>

#include "gis/errors.h"
#include "gis/gis_functions.h"
#include "gis/numbers.h"
#include "gis/polygon_analysis.h"
#include "gis/text.h"
#include "gis/units.h"
#include "gis/zone_keys.h"

namespace velmora {

namespace {

// Acres as the tables keep them: three decimals at most.
double roundedAcres(double squareMetres) {
    return lenientNumber(formatPlaces(squareMetres / kSquareMetresPerAcre, 3));
}

double numberOf(const ITable& table, std::size_t record, const std::string& field) {
    const FieldValue value = table.value(record, field);
    const auto* number = std::get_if<double>(&value);
    if (!number) throw PlatformError("the zonal result has no " + field);
    return *number;
}

using Row = std::vector<std::pair<std::string, FieldValue>>;

void append(IFeatureWorkspaceFactory& features, const std::shared_ptr<ITable>& table,
            const std::vector<Row>& rows) {
    const auto session = features.edit(table);
    for (const Row& row : rows) session->appendRecord(row);
    session->save();
}

// Whether a failed append has reached the table all the same: its new file had the table's name
// before something else failed.
bool hasGrown(IFeatureWorkspaceFactory& features, const ITable& before) {
    return features.openTable(before.path())->recordCount() > before.recordCount();
}

// Appends all rows at once; when that fails, one after the other up to the one that fails.
void appendAsFarAsPossible(IFeatureWorkspaceFactory& features, const std::shared_ptr<ITable>& table,
                           const std::vector<Row>& rows) {
    try {
        append(features, table, rows);
        return;
    } catch (const PlatformError&) {
        if (hasGrown(features, *table)) throw;
        for (const Row& row : rows) {
            try {
                append(features, table, {row});
            } catch (const PlatformError& e) {
                throw PlatformError("zone \"" + keyText(row.front().second) + "\": " + e.what(),
                                    e.place());
            }
        }
    }
}

// All zones say how keys are held, those without data in this month too.
ZoneKeys keysOf(const IFeatureClass& zones, const ITable& zonalResult, const std::string& field) {
    return zones.fieldIndex(field) >= 0 ? ZoneKeys(zones, field) : ZoneKeys(zonalResult, field);
}

// Tells of each key that its table does not show whole, in the first month in which it comes.
void tellCutKeys(IPrompts& prompts, const ZoneKeys& keys, const ITable& zonalResult,
                 const std::string& field, const ITable& statTable) {
    std::set<std::string> told;
    for (std::size_t r = 0; r < statTable.recordCount(); ++r) {
        told.insert(keyText(statTable.value(r, "ZoneUnit")));
    }
    std::set<std::string> now;
    for (std::size_t r = 0; r < zonalResult.recordCount(); ++r) {
        const std::string key = keyText(zonalResult.value(r, field));
        const std::string warning = keys.warning(key);
        if (warning.empty() || told.contains(keys.inTable(key)) || !now.insert(key).second)
            continue;
        prompts.notice(statTable.name() + ": the zone key \"" + key + "\" " + warning);
    }
}

}  // namespace

int zonalDaysOfMonth(int month, int year) {
    static constexpr std::array<int, 12> lengths = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12) return 0;
    if (month == 2 && year % 4 == 0) return 29;
    return lengths[static_cast<std::size_t>(month - 1)];
}

bool CreateStatTable(IPlatform& platform, IPrompts& prompts, const std::string& workspacePath,
                     const std::string& name) {
    try {
        const std::string tag = name.substr(name.size() - std::min<std::size_t>(3, name.size()));
        platform.features().createTable(joinedPath(workspacePath, name + ".dbf"),
                                        {{"ZoneUnit", FieldType::text, kZoneKeyWidth, 0},
                                         {"Area_T_ac", FieldType::number, 20, 15},
                                         {"Area_C_ac", FieldType::number, 50, 15},
                                         {"Month", FieldType::integer, 10, 0},
                                         {tag + "_D_ft", FieldType::number, 20, 15},
                                         {tag + "_V_acft", FieldType::number, 20, 15}},
                                        {});
        return true;
    } catch (const std::exception& e) {
        prompts.failure(e.what());
        return false;
    }
}

void MakeZonalStat(IPlatform& platform, IPrompts& prompts, const ZonalTableSettings& settings,
                   const RasterPtr& values, const std::string& tableName, int month) {
    const auto table = OpenTable(platform, prompts, settings.outputWorkspace, tableName);
    if (settings.zones.empty()) {
        throw PlatformError("The zone shapefile is not set: choose it in the General Settings");
    }
    const auto zones = platform.features().openFeatureClass(settings.zones, values->geometry().crs);
    const auto result = platform.analysis().zonal()->ZonalStatisticsAsTable(
        zones, settings.zoneField, values, true);
    const std::string depthField = tableName.substr(tableName.size() - 3) + "_D_Ft";
    GotoStatTable(platform, prompts, month, settings.year, *result, table, settings.zoneField,
                  depthField, *zones);
}

void GotoStatTable(IPlatform& platform, IPrompts& prompts, int month, int year,
                   const ITable& zonalResult, const std::shared_ptr<ITable>& statTable,
                   const std::string& zoneField, const std::string& depthField,
                   const IFeatureClass& zoneClass) {
    try {
        if (!statTable) throw PlatformError("the table is not open");
        const std::vector<double> polygonAreas = zoneClass.areas();
        const int days = zonalDaysOfMonth(month, year);
        const std::string volumeField = depthField.substr(0, 3) + "_V_acft";
        const ZoneKeys keys = keysOf(zoneClass, zonalResult, zoneField);
        tellCutKeys(prompts, keys, zonalResult, zoneField, *statTable);
        std::vector<Row> rows;
        for (std::size_t i = 0; i < zonalResult.recordCount(); ++i) {
            const double countedArea = numberOf(zonalResult, i, "Area");
            const double depth = days * numberOf(zonalResult, i, "Mean") / kMillimetresPerFoot;
            rows.push_back({{"ZoneUnit", keys.inTable(keyText(zonalResult.value(i, zoneField)))},
                            {"Area_T_ac", roundedAcres(polygonAreas.at(i))},
                            {"Area_C_ac", roundedAcres(countedArea)},
                            {"Month", static_cast<double>(month)},
                            {depthField, depth},
                            {volumeField, depth * (countedArea / kSquareMetresPerAcre)}});
        }
        appendAsFarAsPossible(platform.features(), statTable, rows);
    } catch (const std::exception& e) {
        prompts.failure("Error in sub <GotoStatTable>: " + std::string(e.what()));
    }
}

}  // namespace velmora
