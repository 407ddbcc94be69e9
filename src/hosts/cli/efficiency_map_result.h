// SPDX-License-Identifier: MIT
// What an efficiency map holds, and which land it leaves out.
#pragma once

#include <cstdint>
#include <string>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora::cli {

struct EfficiencyMapResult {
    std::string path;
    std::int64_t cells = 0;  // with an efficiency
    double minimum = 0;
    double maximum = 0;
    std::string bare;  // how many pieces and acres of land have no efficiency, by crop; "" for none
    std::string declared;  // how many acres are declared not irrigated; "" for none
};

// Of the grid IREF and the pieces Lu_Intersected of the output folder, made of the database's
// efficiencies. Throws PlatformError.
EfficiencyMapResult efficiencyMapResult(IPlatform& platform, const RunSettings& settings,
                                        const std::string& database);

}  // namespace velmora::cli
