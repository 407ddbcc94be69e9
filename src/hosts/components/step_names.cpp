// SPDX-License-Identifier: MIT
#include "hosts/components/step_names.h"

#include <array>

#include "gis/month_names.h"

namespace velmora {

std::vector<StepName> namesForCropEt(const RunSettings& settings) {
    std::vector<StepName> names;
    for (const int month : settings.months()) {
        const std::string name = "Kc_" + GetMonthName(month);
        names.push_back({name + settings.methodTag(), name});
    }
    return names;
}

std::vector<StepName> namesForIrrigationRequirement() { return {{"IREF", "faef_500"}}; }

void copyToName(IPlatform& platform, const std::string& folder, const StepName& name) {
    const auto workspace = platform.rasters().openFromFolder(folder);
    const auto lock = platform.files().lockFolder(folder);
    const auto source = workspace->openRasterDataset(name.made);
    workspace->save(std::array{RasterToSave{name.read, source->createDefaultRaster(), "GRID"}});
    platform.files().settle(folder);
}

}  // namespace velmora
