// SPDX-License-Identifier: MIT
#include "hosts/cli/efficiency_map_result.h"

#include <map>
#include <set>
#include <utility>
#include <vector>

#include "gis/text.h"
#include "gis/units.h"
#include "hosts/cli/console.h"
#include "hosts/results/grid_statistics.h"
#include "irrigation/irrigation_database.h"
#include "irrigation/irrigation_inputs.h"
#include "irrigation/zone_filling.h"
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

using ZoneAndCrop = std::pair<std::string, std::string>;

// The zones and crops that table IREF declares not irrigated; its first row of a pair counts.
std::set<ZoneAndCrop> declaredIn(const IrrigationDatabase& database) {
    std::set<ZoneAndCrop> seen;
    std::set<ZoneAndCrop> declared;
    const auto rows = database.query("Select * from IREF");
    const std::vector<std::string> methods = methodColumns(*rows);
    for (; !rows->eof(); rows->moveNext()) {
        const ZoneAndCrop pair{keyText(rows->value("ZoneUnit")), keyText(rows->value("CropType"))};
        if (!seen.insert(pair).second) continue;
        if (isDeclaredNotIrrigated(*rows, methods)) declared.insert(pair);
    }
    return declared;
}

// The pieces that fall out of the map: by mistake where their zone or crop has no row or no shares,
// by crop, and those that are declared not irrigated.
void addBareLand(IPlatform& platform, const RunSettings& settings,
                 const std::set<ZoneAndCrop>& notIrrigated, EfficiencyMapResult& result) {
    const auto pieces = platform.features().openFeatureClass(
        joinedPath(settings.OutputWorkspace, productMadeBy("eff").onTheWay));
    const std::vector<double> areas = pieces->areas();
    std::map<std::string, Land> byCrop;
    Land all;
    Land bare;
    Land declared;
    for (std::size_t r = 0; r < pieces->recordCount(); ++r) {
        all.add(areas.at(r));
        const FieldValue efficiency = pieces->value(r, "IREF");
        const auto* number = std::get_if<double>(&efficiency);
        if (number && *number != 0) continue;
        const std::string crop = keyText(pieces->value(r, kCropField));
        if (notIrrigated.contains({keyText(pieces->value(r, settings.ZoneField)), crop})) {
            declared.add(areas.at(r));
            continue;
        }
        bare.add(areas.at(r));
        byCrop[crop].add(areas.at(r));
    }
    if (declared.pieces > 0) {
        result.declared = declared.acres() + " are declared not irrigated";
    }
    if (bare.pieces == 0) return;
    std::vector<std::string> crops;
    for (const auto& [crop, land] : byCrop) {
        crops.push_back(fmt::format("{} ({}, {})", crop.empty() ? "no crop type" : crop,
                                    land.pieces, land.acres()));
    }
    result.bare = fmt::format(
        "{} of {} of crop and zone have no efficiency, and so no irrigation requirement: {} of "
        "{}: {}",
        bare.pieces, counted(all.pieces, "piece"), bare.acres(), all.acres(), joinedNames(crops));
}

}  // namespace

EfficiencyMapResult efficiencyMapResult(IPlatform& platform, const RunSettings& settings,
                                        const std::string& database) {
    const auto grid = platform.rasters()
                          .openFromFolder(settings.OutputWorkspace)
                          ->openRasterDataset(std::string(productMadeBy("eff").made.stem));
    const GridStatistics s = statisticsOf(*grid->createDefaultRaster());
    EfficiencyMapResult result{
        grid->path(), static_cast<std::int64_t>(s.cells), s.minimum, s.maximum, {}, {}};
    addBareLand(platform, settings, declaredIn(IrrigationDatabase(platform, database)), result);
    return result;
}

}  // namespace velmora::cli
