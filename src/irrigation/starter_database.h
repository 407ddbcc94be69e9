// SPDX-License-Identifier: MIT
// Irrigation databases with method lists and default shares: the tables IRMDDef, IRMD, IR_Dis_1 and
// IR_Dis_2, and IR_Sources, which says where the figures come from.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "gis/application.h"

namespace velmora {

struct IrrigationMethod {
    std::string code;
    double efficiency = 0;  // of application, a fraction
    std::string description;
};

// The shares of the methods, in the order of the method list; a crop of "" stands for all crops.
struct MethodShares {
    std::string zone;
    std::string crop;
    std::vector<double> shares;  // fractions of the irrigated land
};

struct IrrigationDefaults {
    std::vector<IrrigationMethod> methods;
    std::vector<MethodShares> perZone;
    std::vector<MethodShares> perZoneAndCrop;
    std::vector<std::pair<std::string, std::string>> sources;  // of what, and from where
};

// Land cover types by what their names tell.
struct LandTypes {
    std::vector<std::string> irrigated;
    std::vector<std::string> notIrrigated;
    std::vector<std::string> unknown;
};
LandTypes landTypes(const std::vector<std::string>& landCoverCrops);

// Surface, sprinkler and drip irrigation with the shares that they have in the United States, for
// the given zones and land-cover crop types. Land that is not irrigated (water, towns, forest,
// fallow ...) gets shares of 0, and so do types of unknown names unless they count as irrigated;
// close-growing crops get no drip irrigation.
IrrigationDefaults starterDefaults(const std::vector<std::string>& zones,
                                   const std::vector<std::string>& landCoverCrops,
                                   bool unknownIrrigated = false);

// Makes the database in one step, replacing an older file. Throws PlatformError.
void createIrrigationDatabase(IPlatform& platform, const std::string& path,
                              const IrrigationDefaults& defaults);

}  // namespace velmora
