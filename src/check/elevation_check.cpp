// SPDX-License-Identifier: MIT
#include "check/elevation_check.h"

#include <algorithm>
#include <cmath>

#include "gis/cell_values.h"
#include "gis/errors.h"
#include "gis/numbers.h"

namespace velmora {

namespace {

constexpr double kFoot = 0.3048;
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
        const FieldValue value = stations.value(s, "ELEVATION");
        const auto* elevation = std::get_if<double>(&value);
        if (elevation && ground[s]) pairs.push_back({*elevation, *ground[s]});
    }
    return pairs;
}

// The station above the ground, in metres, that half of the stations exceed.
double medianDifference(const std::vector<Pair>& pairs, double stationUnit, double groundUnit) {
    std::vector<double> differences;
    for (const Pair& p : pairs) {
        differences.push_back(p.station * stationUnit - p.ground * groundUnit);
    }
    const auto middle = differences.begin() + static_cast<long>(differences.size() / 2);
    std::nth_element(differences.begin(), middle, differences.end());
    return *middle;
}

double unitOf(const std::string& text) { return text == "Feet" ? kFoot : 1; }
const char* otherUnit(const std::string& text) { return text == "Feet" ? "Meters" : "Feet"; }

}  // namespace

std::vector<Finding> checkStationElevations(IPlatform& platform, const RunSettings& settings,
                                            const IFeatureClass& stations,
                                            const GridGeometry& domain) {
    std::vector<Pair> pairs;
    try {
        pairs = pairsOf(platform, settings, stations, domain);
    } catch (const PlatformError&) {
        return {};
    }
    if (pairs.empty()) return {};
    const double site = unitOf(settings.SiteElevationUnit);
    const double dem = unitOf(settings.DemUnit);
    const double off = medianDifference(pairs, site, dem);
    if (std::fabs(off) <= kFarOff) return {};

    const char* otherSite = otherUnit(settings.SiteElevationUnit);
    const char* otherDem = otherUnit(settings.DemUnit);
    std::string remedy;
    if (std::fabs(medianDifference(pairs, unitOf(otherSite), dem)) < kAgrees) {
        remedy = std::string("SiteElevationUnit=") + otherSite;
    }
    if (std::fabs(medianDifference(pairs, site, unitOf(otherDem))) < kAgrees) {
        remedy += (remedy.empty() ? "" : " or ") + std::string("DemUnit=") + otherDem;
    }
    const std::string lie = "the stations lie some " +
                            numberText(std::round(std::fabs(off) / 10) * 10) + " m " +
                            (off < 0 ? "below" : "above") + " the DEM " + settings.DEM;
    if (remedy.empty()) {
        return {{Severity::warning,
                 stations.path(),
                 "ELEVATION",
                 {},
                 lie + ": compare their coordinates and elevations"}};
    }
    return {{Severity::warning,
             stations.path(),
             "ELEVATION",
             {},
             lie + " (middle of " + std::to_string(pairs.size()) +
                 " stations); they would agree with " + remedy}};
}

}  // namespace velmora
