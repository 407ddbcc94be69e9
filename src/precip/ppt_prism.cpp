// SPDX-License-Identifier: MIT
#include "gis/numbers.h"
#include "gis/raster_compare.h"
#include "gis/text.h"
#include "precip/precipitation_rules.h"
#include "precip/precipitation_run.h"
#include "precip/reference_grids.h"

namespace velmora {

void PrecipitationRun::PPT_PRISM() {
    prepare();
    makeMonths(&PrecipitationRun::prismMonth);
}

void PrecipitationRun::prismMonth(int month) {
    const std::string field = stations_->weatherField("P_", month);
    stations_->requireWeatherField(field);
    const auto reference = openReferenceGrid(platform_, settings_, month);
    tellPassedOver(application_.prompts(), platform_.rasters(), *reference);
    const RasterPtr prism = reference->createDefaultRaster();
    const std::string path = prismGridPath(settings_.PrismGridFolder, month);
    algebra_->BindRaster(prism, "SfcPPT");
    const std::vector<std::optional<double>> references = ExtractPRISMValue(*prism);
    warnOfKeptValues(path, field, references);

    StationSurface surface(referencedPrecipitation(), *stations_, month, {path, references});
    if (rainlessMonth(month, field)) return;
    tellZeros(month, field, surface.valid());
    finishMonth(month, surface.make(*interpolation_, *algebra_));
    explain(surface);
}

// A station without a reference value that has something in the working field gets a ratio to that,
// which seldom means anything: the user is told once, with what is there.
void PrecipitationRun::warnOfKeptValues(const std::string& path, const std::string& field,
                                        const std::vector<std::optional<double>>& references) {
    if (toldOfKeptValues_) return;
    std::vector<std::string> names;
    for (std::size_t station = 0; station < references.size(); ++station) {
        const auto held = stations_->number(station, stations_->workingField());
        if (!references[station] && held && stations_->number(station, field)) {
            names.push_back(stations_->name(station) + " (" + numberText(*held) + ")");
        }
    }
    if (names.empty()) return;
    toldOfKeptValues_ = true;
    application_.prompts().notice(
        "The reference grid " + path + " has no value at " + joinedNames(names) +
        ": their ratios are made to what the stations' field RefPPT held before. Delete that field "
        "from " +
        settings_.WeatherStations + " to leave such stations out");
}

std::vector<std::optional<double>> PrecipitationRun::ExtractPRISMValue(const IRaster& prism) {
    return sampleReference(platform_, prism, geometry_.crs, *stations_);
}

}  // namespace velmora
