// SPDX-License-Identifier: MIT
#include "hosts/chain/step_names.h"

#include <array>

#include "gis/month_names.h"
#include "gis/working_folder.h"

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
    WorkingFolder working(platform.files(), folder);
    const auto source = workspace->openRasterDataset(name.made);
    workspace->save(std::array{RasterToSave{name.read, source->createDefaultRaster(), "GRID"}});
    working.settle();
}

}  // namespace velmora
