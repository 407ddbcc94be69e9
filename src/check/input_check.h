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

// What is looked at.
struct CheckScope {
    bool weather = true;        // stations, and what reference ET takes of their weather
    bool precipitation = true;  // stations, their precipitation and the reference grids
    bool crops = true;          // land cover and crop coefficients
    bool zones = true;          // the zones
    bool irrigation = true;     // the irrigation database
    bool grids = true;          // what lies in the output folder between the steps
    bool quick = false;         // without what looks at every cell or shape, or tries a surface
};

// The inputs that a step reads ("refet"), or all steps do ("all"), without the grids of the output
// folder: which of them are old the step tells itself.
CheckScope inputsOfStep(const std::string& step);

std::vector<Finding> checkInputs(IPlatform& platform, const RunSettings& settings,
                                 const CheckScope& scope = {});

}  // namespace velmora
