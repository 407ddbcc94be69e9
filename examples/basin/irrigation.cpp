// SPDX-License-Identifier: MIT
#include "examples/basin/irrigation.h"

#include <array>
#include <vector>

#include "examples/basin/crops.h"
#include "examples/basin/land.h"
#include "irrigation/default_names.h"
#include "irrigation/starter_database.h"

namespace velmora::examples {

namespace {

// T. A. Howell (2003), Irrigation efficiency, Encyclopedia of Water Science: average field
// efficiencies.
const std::vector<IrrigationMethod> kMethods = {
    {"Border", 0.65, "Graded border, average field efficiency 65 % (Howell 2003)"},
    {"Furrow", 0.65, "Graded furrow, average field efficiency 65 % (Howell 2003)"},
    {"SideRoll", 0.75, "Side roll sprinkler, average field efficiency 75 % (Howell 2003)"},
    {"Pivot", 0.80, "Centre pivot, impact heads, average field efficiency 80 % (Howell 2003)"},
    {"Drip", 0.85, "Surface drip, average field efficiency 85 % (Howell 2003)"},
};

using Shares = std::vector<double>;

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

}  // namespace

void makeIrrigationDatabase(IPlatform& platform, const std::string& path) {
    IrrigationDefaults defaults;
    defaults.methods = kMethods;
    const auto zones = basinZoneNames();
    for (std::size_t z = 0; z < zones.size(); ++z) {
        defaults.perZone.push_back({zones[z], "", kZoneShares[z]});
        for (const CropCurve& crop : cropCurves()) {
            // The tables know pasture under another name.
            defaults.perZoneAndCrop.push_back(
                {zones[z], MatchCrop(crop.name), cropShares(crop.name, kZoneShares[z])});
        }
    }
    defaults.sources = {
        {"Method efficiencies (IRMDDef)",
         "T. A. Howell (2003), Irrigation efficiency, Encyclopedia of Water Science: average "
         "field efficiencies"},
        {"Shares (IR_Dis_1, IR_Dis_2)",
         "Assumed for a made-up valley: more pivots downstream, more border irrigation upstream"}};
    createIrrigationDatabase(platform, path, defaults);
}

}  // namespace velmora::examples
