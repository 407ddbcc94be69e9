// SPDX-License-Identifier: MIT
#include "hosts/cli/efficiency_map_result.h"

#include <map>
#include <vector>

#include "gis/text.h"
#include "hosts/cli/console.h"
#include "hosts/cli/grid_statistics.h"
#include "settings/irrigation_inputs.h"

namespace velmora::cli {

namespace {

// The pieces that fall out of the map, by crop: for ever where they are not irrigated, by mistake
// where their zone or crop has no row.
std::string bareLand(IPlatform& platform, const std::string& outputFolder) {
    const auto pieces =
        platform.features().openTable(joinedPath(outputFolder, "Lu_Intersected.dbf"));
    std::map<std::string, long long> byCrop;
    long long bare = 0;
    for (std::size_t r = 0; r < pieces->recordCount(); ++r) {
        const FieldValue efficiency = pieces->value(r, "IREF");
        const auto* number = std::get_if<double>(&efficiency);
        if (number && *number != 0) continue;
        ++bare;
        ++byCrop[keyText(pieces->value(r, kCropField))];
    }
    if (bare == 0) return {};
    std::vector<std::string> crops;
    for (const auto& [crop, count] : byCrop) {
        crops.push_back((crop.empty() ? "no crop type" : crop) + " (" + std::to_string(count) +
                        ")");
    }
    return fmt::format(
        "{} of {} of crop and zone have no efficiency, and so no irrigation requirement: {}", bare,
        counted(static_cast<long long>(pieces->recordCount()), "piece"), joinedNames(crops));
}

}  // namespace

EfficiencyMapResult efficiencyMapResult(IPlatform& platform, const std::string& outputFolder) {
    const auto grid = platform.rasters().openFromFolder(outputFolder)->openRasterDataset("IREF");
    const GridStatistics s = statisticsOf(*grid->createDefaultRaster());
    return {grid->path(), static_cast<std::int64_t>(s.cells), s.minimum, s.maximum,
            bareLand(platform, outputFolder)};
}

}  // namespace velmora::cli
