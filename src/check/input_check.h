// SPDX-License-Identifier: MIT
// Looks through everything that the settings name and lists what is wrong (a run would fail) or
// suspicious (a run would work, but its numbers may not be what the user wants).
#pragma once

#include <string>
#include <vector>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

enum class Severity { error, warning, note };

struct Finding {
    Severity severity = Severity::note;
    std::string file;     // or the setting's name
    std::string field;    // "" when it concerns the whole file
    std::string station;  // "" when it concerns no single station
    std::string text;     // what is wrong and what to do
    // It was met on the way to something else, and is told only where no other finding says it.
    bool onTheWay = false;
};

// "error: stations.shp: ELEVATION: Logan: ..."
std::string findingLine(const Finding& finding);

std::vector<Finding> checkInputs(IPlatform& platform, const RunSettings& settings);

}  // namespace velmora
