// SPDX-License-Identifier: MIT
// Some steps look for a grid under another name than the one under which it is made. Hosts offer
// the copies; no step makes them by itself.
#pragma once

#include <string>
#include <vector>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

// A grid of the output folder and the name under which the next step reads it.
struct StepName {
    std::string made;
    std::string read;
};

// Kc maps carry the method in their names, crop ET looks for them without it.
std::vector<StepName> namesForCropEt(const RunSettings& settings);
// The efficiency map is made as IREF and read as faef_500.
std::vector<StepName> namesForIrrigationRequirement();

// Saves the grid under the name that is read, replacing an older one, while it holds the folder's
// lock. Throws PlatformError, also when a run works in the folder.
void copyToName(IPlatform& platform, const std::string& folder, const StepName& name);

}  // namespace velmora
