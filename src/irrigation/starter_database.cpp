// SPDX-License-Identifier: MIT
#include "irrigation/starter_database.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "gis/files.h"
#include "gis/text.h"
#include "irrigation/default_names.h"
#include "irrigation/irrigation_database.h"
#include "irrigation/land_names.h"

namespace velmora {

namespace {

// C. Brouwer, K. Prins and M. Heibloem (1989), Irrigation Water Management Training Manual No. 4,
// FAO, annex I, table 8: indicative field application efficiencies.
const std::vector<IrrigationMethod> kMethods = {
    {"Surface", 0.60, "Border, furrow, basin: 60 % (FAO Training Manual 4, table 8)"},
    {"Sprinkler", 0.75, "Sprinkler: 75 % (FAO Training Manual 4, table 8)"},
    {"Drip", 0.90, "Drip: 90 % (FAO Training Manual 4, table 8)"}};

// C. A. Dieter and others (2018), Estimated use of water in the United States in 2015, USGS
// Circular 1441, table 7: irrigated land of the United States, millions of acres.
constexpr double kSurface = 23.3;
constexpr double kSprinkler = 34.7;
constexpr double kDrip = 5.49;

double rounded(double share) { return std::round(share * 1000) / 1000; }

// In the order of the methods; they add up to 1, or are all 0.
std::vector<double> sharesOf(const std::string& crop, bool irrigated) {
    if (!irrigated) return {0, 0, 0};
    const double drip = isCloseGrowing(crop) ? 0 : kDrip;
    const double all = kSurface + kSprinkler + drip;
    const double surface = rounded(kSurface / all);
    const double sprinkler = rounded(kSprinkler / all);
    return {surface, sprinkler, drip == 0 ? 0 : rounded(1 - surface - sprinkler)};
}

void fillShares(IrrigationDatabase& database, const std::string& table,
                const IrrigationDefaults& defaults, const std::vector<MethodShares>& rows) {
    const auto records = database.query("SELECT * FROM " + table);
    for (const MethodShares& row : rows) {
        records->addNew();
        records->setValue("ZONEUNIT", row.zone);
        if (!row.crop.empty()) records->setValue("CropType", row.crop);
        for (std::size_t i = 0; i < defaults.methods.size(); ++i) {
            records->setValue(defaults.methods[i].code, row.shares.at(i));
        }
        records->update();
    }
}

void makeTables(IConnection& connection, const IrrigationDefaults& defaults) {
    const ColumnDefinition zone{"ZONEUNIT", FieldType::text, 50};
    const ColumnDefinition crop{"CropType", FieldType::text, 50};
    const std::vector<ColumnDefinition> method = {{"IRMD", FieldType::text, 20},
                                                  {"IRMDEF", FieldType::number, 0},
                                                  {"IRMDDES", FieldType::text, 100}};
    const auto with = [](std::vector<ColumnDefinition> first,
                         const std::vector<ColumnDefinition>& rest) {
        first.insert(first.end(), rest.begin(), rest.end());
        return first;
    };
    std::vector<ColumnDefinition> shares;
    for (const IrrigationMethod& m : defaults.methods) {
        shares.push_back({m.code, FieldType::number, 0});
    }
    connection.createTable("IRMDDef", method);
    connection.createTable("IRMD", with({zone}, method));
    connection.createTable("IR_Dis_1", with({zone}, shares));
    connection.createTable("IR_Dis_2", with({zone, crop}, shares));
    connection.createTable("IR_Sources",
                           {{"Item", FieldType::text, 100}, {"Source", FieldType::text, 250}});
}

}  // namespace

LandTypes landTypes(const std::vector<std::string>& landCoverCrops) {
    LandTypes types;
    for (const std::string& crop :
         std::set<std::string>(landCoverCrops.begin(), landCoverCrops.end())) {
        const LandKind kind = landKindOf(crop);
        auto& list = kind == LandKind::crop           ? types.irrigated
                     : kind == LandKind::notIrrigated ? types.notIrrigated
                                                      : types.unknown;
        list.push_back(crop);
    }
    return types;
}

IrrigationDefaults starterDefaults(const std::vector<std::string>& zones,
                                   const std::vector<std::string>& landCoverCrops,
                                   bool unknownIrrigated) {
    // Types that share a row are irrigated when one of them is.
    std::map<std::string, bool> crops;
    for (const std::string& crop : landCoverCrops) {
        const LandKind kind = landKindOf(crop);
        bool& irrigated = crops[MatchCrop(crop)];
        irrigated =
            irrigated || kind == LandKind::crop || (kind == LandKind::unknown && unknownIrrigated);
    }
    crops.emplace("Other", true);
    IrrigationDefaults defaults;
    defaults.methods = kMethods;
    for (const std::string& zone : std::set<std::string>(zones.begin(), zones.end())) {
        defaults.perZone.push_back({MatchCounty(zone), "", sharesOf("Other", true)});
        for (const auto& [crop, irrigated] : crops) {
            defaults.perZoneAndCrop.push_back({MatchCounty(zone), crop, sharesOf(crop, irrigated)});
        }
    }
    defaults.sources = {
        {"Method efficiencies (IRMDDef)",
         "Brouwer, Prins and Heibloem (1989), Irrigation Water Management Training Manual No. 4, "
         "FAO, annex I, table 8: indicative field application efficiencies"},
        {"Shares per zone (IR_Dis_1)",
         "National figures, not those of a state: Dieter and others (2018), USGS Circular 1441, "
         "table 7, irrigated land of the United States in 2015: surface 23.3, sprinkler 34.7, "
         "microirrigation 5.49 million acres; "
         "replace "
         "them by shares of your own zones"},
        {"Shares per zone and crop (IR_Dis_2)",
         "The same; no drip irrigation of close-growing crops, for which it is not suitable "
         "(Brouwer and others 1988, Training Manual No. 5, FAO, chapter 7)"},
        {"Shares of 0",
         "Land that is not irrigated, by its name: water, urban, forest, fallow ...; and names "
         "that "
         "tell nothing, unless they were said to be irrigated"}};
    return defaults;
}

void createIrrigationDatabase(IPlatform& platform, const std::string& path,
                              const IrrigationDefaults& defaults) {
    platform.connections().makeDatabase(path, [&](const std::string& unfinished) {
        const std::string connection = irrigationConnection(unfinished);
        platform.connections().createDatabase(connection);
        makeTables(*platform.connections().open(connection), defaults);
        IrrigationDatabase database(platform, unfinished);
        const auto transaction = database.beginTransaction();
        const auto methods = database.query("SELECT * FROM IRMDDef");
        for (const IrrigationMethod& method : defaults.methods) {
            methods->addNew();
            methods->setValue("IRMD", method.code);
            methods->setValue("IRMDEF", method.efficiency);
            methods->setValue("IRMDDES", method.description);
            methods->update();
        }
        fillShares(database, "IR_Dis_1", defaults, defaults.perZone);
        fillShares(database, "IR_Dis_2", defaults, defaults.perZoneAndCrop);
        const auto sources = database.query("SELECT * FROM IR_Sources");
        for (const auto& [item, source] : defaults.sources) {
            sources->addNew();
            sources->setValue("Item", item);
            sources->setValue("Source", source);
            sources->update();
        }
        transaction->commit();
    });
}

}  // namespace velmora
