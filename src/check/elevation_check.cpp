// SPDX-License-Identifier: MIT
#include "check/elevation_check.h"

#include <algorithm>
#include <cmath>

#include "gis/cell_values.h"
#include "gis/errors.h"
#include "gis/numbers.h"
#include "modelling/station_fields.h"
#include "settings/run_choices.h"

namespace velmora {

namespace {

constexpr double kFarOff = 300;  // metres; no usual DEM and station are so far apart
constexpr double kAgrees = 100;  // metres

// An elevation of a station and the DEM under it, each in its own unit.
struct Pair {
    double station;
    double ground;
};

std::vector<Pair> pairsOf(IPlatform& platform, const RunSettings& settings,
                          const IFeatureClass& stations, const GridGeometry& domain) {
    const auto dem = platform.rasters().openRasterDataset(settings.DEM)->createDefaultRaster();
    const auto ground =
        cellValuesAt(*dem, stations.points(domain.crs), domain.crs, platform.spatialReferences());
    std::vector<Pair> pairs;
    for (std::size_t s = 0; s < ground.size(); ++s) {
        const FieldValue value = stations.value(s, kElevationField);
        const auto* elevation = std::get_if<double>(&value);
        if (elevation && ground[s]) pairs.push_back({*elevation, *ground[s]});
    }
    return pairs;
}

// The station above the ground, in metres, that half of the stations exceed.
double medianDifference(const std::vector<Pair>& pairs, LengthUnit stationUnit,
                        LengthUnit groundUnit) {
    std::vector<double> differences;
    for (const Pair& p : pairs) {
        differences.push_back(p.station * metresIn(stationUnit) - p.ground * metresIn(groundUnit));
    }
    const auto middle = differences.begin() + static_cast<long>(differences.size() / 2);
    std::nth_element(differences.begin(), middle, differences.end());
    return *middle;
}

LengthUnit otherThan(LengthUnit unit) {
    return unit == LengthUnit::feet ? LengthUnit::metres : LengthUnit::feet;
}

}  // namespace

std::vector<Finding> checkStationElevations(IPlatform& platform, const RunSettings& settings,
                                            const IFeatureClass& stations,
                                            const GridGeometry& domain) {
    std::vector<Pair> pairs;
    try {
        pairs = pairsOf(platform, settings, stations, domain);
    } catch (const PlatformError& e) {
        return {{Severity::error, settings.DEM, {}, {}, e.what(), true}};
    }
    if (pairs.empty()) return {};
    const LengthUnit site = siteElevationUnit(settings);
    const LengthUnit dem = demUnit(settings);
    const double off = medianDifference(pairs, site, dem);
    if (std::fabs(off) <= kFarOff) return {};

    std::string remedy;
    if (std::fabs(medianDifference(pairs, otherThan(site), dem)) < kAgrees) {
        remedy = std::string("SiteElevationUnit=") + textOf(otherThan(site));
    }
    if (std::fabs(medianDifference(pairs, site, otherThan(dem))) < kAgrees) {
        remedy += (remedy.empty() ? "" : " or ") + std::string("DemUnit=") + textOf(otherThan(dem));
    }
    const std::string lie = "the stations lie some " +
                            numberText(std::round(std::fabs(off) / 10) * 10) + " m " +
                            (off < 0 ? "below" : "above") + " the DEM " + settings.DEM;
    if (remedy.empty()) {
        return {{Severity::warning,
                 stations.path(),
                 kElevationField,
                 {},
                 lie + ": compare their coordinates and elevations"}};
    }
    return {{Severity::warning,
             stations.path(),
             kElevationField,
             {},
             lie + " (middle of " + std::to_string(pairs.size()) +
                 " stations); they would agree with " + remedy}};
}

}  // namespace velmora
