// SPDX-License-Identifier: MIT
#include "platform/analysis/interpolation.h"

#include <algorithm>
#include <utility>

#include "gis/errors.h"
#include "platform/analysis/coincident.h"
#include "platform/analysis/semivariogram.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kMostStationSets = 4;  // kept for the surfaces to come

struct MergedStations {
    std::vector<Point> places;
    std::vector<double> values;

    explicit MergedStations(const std::vector<Sample>& samples) {
        for (const Sample& sample : mergedCoincident(samples)) {
            places.push_back(sample.at);
            values.push_back(sample.value);
        }
    }
};

}  // namespace

RasterPtr InterpolationOp::IDW(const std::vector<Sample>& samples, double power, int nearest) {
    if (samples.empty()) throw PlatformError("There is no station to interpolate from");
    MergedStations stations(samples);
    const GridGeometry geometry = environment_.geometry();
    const auto found = std::ranges::find_if(idwPlans_, [&](const auto& plan) {
        return plan->serves(geometry, stations.places, power, nearest);
    });
    if (found != idwPlans_.end()) return idwRaster(*found, std::move(stations.values));
    idwPlans_.push_back(std::make_shared<IdwPlan>(geometry, stations.places, power, nearest));
    return idwRaster(idwPlans_.back(), std::move(stations.values));
}

RasterPtr InterpolationOp::Krige(const std::vector<Sample>& samples, SemivariogramType,
                                 int nearest) {
    const auto fitted = semivariogram(samples);
    return fitted ? Krige(samples, fitted->model, nearest) : nullptr;
}

std::optional<Semivariogram> InterpolationOp::semivariogram(
    const std::vector<Sample>& samples) const {
    return semivariogramOf(mergedCoincident(samples));
}

RasterPtr InterpolationOp::Krige(const std::vector<Sample>& samples, const SphericalModel& model,
                                 int nearest) {
    const MergedStations stations(samples);
    return krigedSurface(neighbourSets(stations.places, nearest), model, stations.values);
}

std::shared_ptr<const NeighbourSets> InterpolationOp::neighbourSets(
    const std::vector<Point>& stations, int nearest) {
    const GridGeometry geometry = environment_.geometry();
    const auto found = std::ranges::find_if(neighbourSets_, [&](const auto& sets) {
        return sets->serves(geometry, stations, nearest);
    });
    if (found != neighbourSets_.end()) return *found;
    if (neighbourSets_.size() == kMostStationSets) neighbourSets_.erase(neighbourSets_.begin());
    neighbourSets_.push_back(std::make_shared<NeighbourSets>(geometry, stations, nearest));
    return neighbourSets_.back();
}

}  // namespace velmora::platform
