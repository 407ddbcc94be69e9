// SPDX-License-Identifier: MIT
#include "platform/analysis/interpolation.h"

#include <algorithm>
#include <utility>

#include "gis/errors.h"
#include "platform/analysis/coincident.h"
#include "platform/analysis/semivariogram.h"

namespace velmora::platform {

namespace {

// What is kept for the surfaces to come.
constexpr std::size_t kMostStationSets = 4;
constexpr std::size_t kMostPlanBytes = 64'000'000;

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
    const KrigingPlan& plan = krigingPlan(neighbourSets(stations.places, nearest), model);
    return plan.singular() ? nullptr : plan.surface(stations.values);
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

const KrigingPlan& InterpolationOp::krigingPlan(std::shared_ptr<const NeighbourSets> sets,
                                                const SphericalModel& model) {
    const auto found = std::ranges::find_if(
        krigingPlans_, [&](const auto& plan) { return plan->serves(*sets, model); });
    if (found != krigingPlans_.end()) return **found;
    krigingPlans_.push_back(std::make_unique<KrigingPlan>(std::move(sets), model));
    std::size_t bytes = 0;
    for (const auto& plan : krigingPlans_) bytes += plan->bytes();
    while (bytes > kMostPlanBytes && krigingPlans_.size() > 1) {
        bytes -= krigingPlans_.front()->bytes();
        krigingPlans_.erase(krigingPlans_.begin());
    }
    return *krigingPlans_.back();
}

}  // namespace velmora::platform
