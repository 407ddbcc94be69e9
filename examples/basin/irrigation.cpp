// SPDX-License-Identifier: MIT
#include "examples/basin/irrigation.h"

#include <array>
#include <memory>
#include <vector>

#include "examples/basin/crops.h"
#include "examples/basin/land.h"

namespace velmora::examples {

namespace {

struct Method {
    const char* code;
    double efficiency;
    const char* description;
};

// T. A. Howell (2003), Irrigation efficiency, Encyclopedia of Water Science: average field
// efficiencies.
const std::array<Method, 5> kMethods = {{
    {"Border", 0.65, "Graded border, average field efficiency 65 % (Howell 2003)"},
    {"Furrow", 0.65, "Graded furrow, average field efficiency 65 % (Howell 2003)"},
    {"SideRoll", 0.75, "Side roll sprinkler, average field efficiency 75 % (Howell 2003)"},
    {"Pivot", 0.80, "Centre pivot, impact heads, average field efficiency 80 % (Howell 2003)"},
    {"Drip", 0.85, "Surface drip, average field efficiency 85 % (Howell 2003)"},
}};

using Shares = std::array<double, kMethods.size()>;

// Assumed: more pivots down the valley, more border irrigation in the upper zones.
const std::array<Shares, 6> kZoneShares = {{{0.30, 0.10, 0.30, 0.30, 0.00},
                                            {0.25, 0.10, 0.30, 0.35, 0.00},
                                            {0.15, 0.15, 0.25, 0.45, 0.00},
                                            {0.10, 0.15, 0.25, 0.50, 0.00},
                                            {0.05, 0.15, 0.15, 0.60, 0.05},
                                            {0.05, 0.10, 0.15, 0.65, 0.05}}};

bool isRowCrop(const std::string& crop) {
    return crop == "Sugar Beets" || crop == "Dry Beans" || crop == "Corn";
}

Shares cropShares(const std::string& crop, const Shares& zone) {
    if (crop == "Pasture") return {0.60, 0.00, 0.25, 0.15, 0.00};
    if (isRowCrop(crop)) return {0.00, 0.35, 0.15, 0.50, 0.00};
    return zone;
}

std::vector<ColumnDefinition> shareColumns(std::vector<ColumnDefinition> keys) {
    for (const Method& method : kMethods) keys.push_back({method.code, FieldType::number, 0});
    return keys;
}

void setShares(IRecordset& record, const Shares& shares) {
    for (std::size_t i = 0; i < kMethods.size(); ++i) record.setValue(kMethods[i].code, shares[i]);
    record.update();
}

void fillDefaults(IConnection& database) {
    const auto zones = basinZoneNames();
    const auto perZone = database.open("SELECT * FROM IR_Dis_1");
    const auto perCrop = database.open("SELECT * FROM IR_Dis_2");
    for (std::size_t z = 0; z < zones.size(); ++z) {
        perZone->addNew();
        perZone->setValue("ZONEUNIT", zones[z]);
        setShares(*perZone, kZoneShares[z]);
        for (const CropCurve& crop : cropCurves()) {
            perCrop->addNew();
            perCrop->setValue("ZONEUNIT", zones[z]);
            perCrop->setValue("CropType", crop.name);
            setShares(*perCrop, cropShares(crop.name, kZoneShares[z]));
        }
    }
}

}  // namespace

void makeIrrigationDatabase(IPlatform& platform, const std::string& path) {
    const std::string connection = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path;
    platform.files().deleteFile(path);
    platform.connections().createDatabase(connection);
    const auto database = platform.connections().open(connection);
    const ColumnDefinition zone{"ZONEUNIT", FieldType::text, 50};
    const ColumnDefinition crop{"CropType", FieldType::text, 50};
    const ColumnDefinition code{"IRMD", FieldType::text, 20};
    const ColumnDefinition efficiency{"IRMDEF", FieldType::number, 0};
    const ColumnDefinition description{"IRMDDES", FieldType::text, 100};
    database->createTable("IRMDDef", {code, efficiency, description});
    database->createTable("IRMD", {zone, code, efficiency, description});
    database->createTable("IR_Dis_1", shareColumns({zone}));
    database->createTable("IR_Dis_2", shareColumns({zone, crop}));
    database->execute("BEGIN");
    const auto methods = database->open("SELECT * FROM IRMDDef");
    for (const Method& method : kMethods) {
        methods->addNew();
        methods->setValue("IRMD", std::string(method.code));
        methods->setValue("IRMDEF", method.efficiency);
        methods->setValue("IRMDDES", std::string(method.description));
        methods->update();
    }
    fillDefaults(*database);
    database->execute("COMMIT");
}

}  // namespace velmora::examples
