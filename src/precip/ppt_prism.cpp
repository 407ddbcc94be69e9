// SPDX-License-Identifier: MIT
#include <numeric>

#include "gis/cell_values.h"
#include "gis/errors.h"
#include "gis/text.h"
#include "modelling/station_interpolation.h"
#include "precip/precipitation_run.h"
#include "precip/reference_grids.h"

namespace velmora {

namespace {

// Hundredths of a millimetre in an inch: reference grids are in the former, stations in the latter.
constexpr double kHundredthsPerInch = 2540;

}  // namespace

void PrecipitationRun::PPT_PRISM() {
    prepare();
    makeMonths(&PrecipitationRun::prismMonth);
}

void PrecipitationRun::prismMonth(int month) {
    const std::string field = stations_->weatherField("P_", month);
    stations_->requireWeatherField(field);
    const RasterPtr prism = openReferenceGrid(platform_, settings_, month);
    const std::string path = prismGridPath(settings_.PrismGridFolder, month);
    algebra_->BindRaster(prism, "SfcPPT");
    const std::vector<std::optional<double>> factors = ExtractPRISMValue(*prism);
    warnOfKeptValues(path, field, factors);

    const std::string ratio = stations_->workingField();
    std::vector<std::size_t> all(stations_->count());
    std::iota(all.begin(), all.end(), 0);
    stations_->calculate(all, "2540 * [" + field + "] / [" + ratio + "]");
    const std::vector<std::size_t> valid =
        stations_->selected("[" + ratio + "] >= 0 AND [" + ratio + "] < 1000");
    if (rainlessMonth(month, field)) return;
    tellZeros(month, field, valid);
    if (valid.empty()) {
        throw surfaceFailure(surfaceName(month), field, month, 0,
                             "no ratio of a station to the reference grid " + path +
                                 " is at least 0 and below 1000" + stations_->zerosText(field));
    }

    algebra_->BindRaster(krigedSurface(*interpolation_, stations_->samples(valid, ratio)),
                         "RefPPT");
    finishMonth(month, algebra_->Execute("[SfcPPT] * [RefPPT] / 2540.0"));
    explain({surfaceName(month), field, ratio, valid, "a ratio of 0 to below 1000", false, true,
             false, true, factors});
}

// A station without a reference value that has something in the working field gets a ratio to that,
// which seldom means anything: the user is told once.
void PrecipitationRun::warnOfKeptValues(const std::string& path, const std::string& field,
                                        const std::vector<std::optional<double>>& factors) {
    if (toldOfKeptValues_) return;
    std::vector<std::string> names;
    for (std::size_t station = 0; station < factors.size(); ++station) {
        if (!factors[station] && stations_->number(station, stations_->workingField()) &&
            stations_->number(station, field)) {
            names.push_back(stations_->name(station));
        }
    }
    if (names.empty()) return;
    toldOfKeptValues_ = true;
    application_.prompts().message(
        "The reference grid " + path + " has no value at " + joinedNames(names) +
        ": their ratios are made to what the stations' field RefPPT held before. Delete that field "
        "from " +
        settings_.WeatherStations + " to leave such stations out");
}

std::vector<std::optional<double>> PrecipitationRun::ExtractPRISMValue(const IRaster& prism) {
    std::vector<std::optional<double>> factors =
        cellValuesAt(prism, stations_->positions(), geometry_.crs, platform_.spatialReferences());
    for (std::size_t station = 0; station < factors.size(); ++station) {
        if (!factors[station]) continue;
        stations_->setWorkingValue(station, *factors[station]);
        *factors[station] /= kHundredthsPerInch;
    }
    return factors;
}

}  // namespace velmora
