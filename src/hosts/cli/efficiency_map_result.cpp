// SPDX-License-Identifier: MIT
#include "hosts/cli/efficiency_map_result.h"

#include <map>
#include <vector>

#include "gis/text.h"
#include "gis/units.h"
#include "hosts/cli/console.h"
#include "hosts/results/grid_statistics.h"
#include "irrigation/irrigation_inputs.h"
#include "modelling/products.h"

namespace velmora::cli {

namespace {

struct Land {
    long long pieces = 0;
    double squareMetres = 0;
    void add(double area) {
        ++pieces;
        squareMetres += area;
    }
    std::string acres() const {
        return fmt::format("{:.1f} acres", squareMetres / kSquareMetresPerAcre);
    }
};

// The pieces that fall out of the map, by crop: for ever where they are not irrigated, by mistake
// where their zone or crop has no row.
std::string bareLand(IPlatform& platform, const std::string& outputFolder) {
    const auto pieces = platform.features().openFeatureClass(
        joinedPath(outputFolder, productMadeBy("eff").onTheWay));
    const std::vector<double> areas = pieces->areas();
    std::map<std::string, Land> byCrop;
    Land all;
    Land bare;
    for (std::size_t r = 0; r < pieces->recordCount(); ++r) {
        all.add(areas.at(r));
        const FieldValue efficiency = pieces->value(r, "IREF");
        const auto* number = std::get_if<double>(&efficiency);
        if (number && *number != 0) continue;
        bare.add(areas.at(r));
        byCrop[keyText(pieces->value(r, kCropField))].add(areas.at(r));
    }
    if (bare.pieces == 0) return {};
    std::vector<std::string> crops;
    for (const auto& [crop, land] : byCrop) {
        crops.push_back(fmt::format("{} ({}, {})", crop.empty() ? "no crop type" : crop,
                                    land.pieces, land.acres()));
    }
    return fmt::format(
        "{} of {} of crop and zone have no efficiency, and so no irrigation requirement: {} of "
        "{}: {}",
        bare.pieces, counted(all.pieces, "piece"), bare.acres(), all.acres(), joinedNames(crops));
}

}  // namespace

EfficiencyMapResult efficiencyMapResult(IPlatform& platform, const std::string& outputFolder) {
    const auto grid = platform.rasters()
                          .openFromFolder(outputFolder)
                          ->openRasterDataset(std::string(productMadeBy("eff").made.stem));
    const GridStatistics s = statisticsOf(*grid->createDefaultRaster());
    return {grid->path(), static_cast<std::int64_t>(s.cells), s.minimum, s.maximum,
            bareLand(platform, outputFolder)};
}

}  // namespace velmora::cli
