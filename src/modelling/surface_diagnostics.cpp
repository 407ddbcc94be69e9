// SPDX-License-Identifier: MIT
#include "modelling/surface_diagnostics.h"

#include <algorithm>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "modelling/station_interpolation.h"

namespace velmora {

namespace {

// A station as the recipe uses it.
struct Member : StationValue {
    std::size_t station = 0;
};

class Diagnosis {
  public:
    Diagnosis(IAnalysisFactory& analysis, const WeatherStations& stations,
              const SurfaceRecipe& recipe)
        : analysis_(analysis), stations_(stations), recipe_(recipe) {
        for (const std::size_t s : recipe.valid) {
            members_.push_back({{stations.positions()[s], stations.elevation(s).value_or(0),
                                 stations.number(s, recipe.value).value()},
                                s});
        }
    }

    SurfaceDiagnostics result() {
        SurfaceDiagnostics found;
        found.surface = recipe_.surface;
        found.field = recipe_.field;
        found.validStations = members_.size();
        found.excluded = excluded();
        if (recipe_.detrended) {
            const std::vector<ElevationPair> pairs = pairsOf(members_);
            found.trend = fitLinearTrend(pairs);
            found.rSquared = rSquared(pairs, *found.trend);
        }
        const std::vector<Sample> samples =
            residuals(members_, found.trend.value_or(LinearTrend{}));
        const auto interpolation = analysis_.interpolation();
        found.semivariogram = interpolation->semivariogram(samples);
        found.kriged = recipe_.kriged && found.semivariogram.has_value();
        for (std::size_t i = 0; i < members_.size(); ++i) {
            std::vector<Member> others = members_;
            others.erase(others.begin() + static_cast<std::ptrdiff_t>(i));
            leaveOut(members_[i], others, found.leaveOneOut);
        }
        if (recipe_.zerosCount) {
            const std::size_t before = found.leaveOneOut.size();
            for (const Member& zero : zeros()) leaveOut(zero, members_, found.leaveOneOut);
            found.zeroStations = found.leaveOneOut.size() - before;
        }
        return found;
    }

  private:
    static std::vector<ElevationPair> pairsOf(const std::vector<Member>& members) {
        return pairsByPosition({members.begin(), members.end()});
    }

    static std::vector<Sample> residuals(const std::vector<Member>& members,
                                         const LinearTrend& trend) {
        std::vector<Sample> samples;
        for (const Member& m : members) {
            samples.push_back({m.at, m.value - trend.b * m.elevation - trend.a});
        }
        return samples;
    }

    std::vector<ExcludedStation> excluded() const {
        std::vector<ExcludedStation> found;
        for (std::size_t s = 0; s < stations_.count(); ++s) {
            if (std::ranges::find(recipe_.valid, s) != recipe_.valid.end()) continue;
            found.push_back({stations_.name(s), reason(s)});
        }
        return found;
    }

    // The stations that hold 0 and take no part, where the surface has a value for them.
    std::vector<Member> zeros() const {
        std::vector<Member> found;
        for (std::size_t s = 0; s < stations_.count(); ++s) {
            if (stations_.number(s, recipe_.field) != 0.0) continue;
            if (std::ranges::find(recipe_.valid, s) != recipe_.valid.end()) continue;
            const auto elevation = stations_.elevation(s);
            if (recipe_.detrended && !elevation) continue;
            found.push_back({{stations_.positions()[s], elevation.value_or(0), 0}, s});
        }
        return found;
    }

    std::string reason(std::size_t station) const {
        const auto observed = stations_.number(station, recipe_.field);
        if (!observed) return "has no value";
        const auto value = stations_.number(station, recipe_.value);
        if (!value) return "has no ratio to the reference grid";
        if (recipe_.detrended && !stations_.elevation(station)) return "has no elevation";
        return numberText(*value) + " is not " + recipe_.validRange;
    }

    // The surface at one place: a grid of one cell around it.
    double interpolatedAt(const Point& at, const std::vector<Sample>& samples) {
        const auto interpolation = analysis_.interpolation();
        useCells(interpolation->environment(), {1, 1, at.x - 0.5, at.y + 0.5, 1, {}});
        float value = kNoData;
        (recipe_.kriged ? krigedSurface(*interpolation, samples)
                        : inverseDistanceSurface(*interpolation, samples))
            ->read({0, 0, 1, 1}, {&value, 1});
        return static_cast<double>(value);
    }

    // A station without which the surface cannot be made has no error of its own.
    void leaveOut(const Member& member, const std::vector<Member>& others,
                  std::vector<LeftOutStation>& results) {
        const auto factor =
            recipe_.factors.empty() ? std::optional(1.0) : recipe_.factors[member.station];
        if (!factor) return;
        try {
            LinearTrend trend;
            if (recipe_.detrended) trend = fitLinearTrend(pairsOf(others));
            double estimate = interpolatedAt(member.at, residuals(others, trend)) + trend.a +
                              trend.b * member.elevation;
            if (recipe_.notNegative) estimate = std::max(0.0, estimate);
            results.push_back(
                {stations_.name(member.station), member.value * *factor, estimate * *factor});
        } catch (const PlatformError&) {
            return;
        }
    }

    IAnalysisFactory& analysis_;
    const WeatherStations& stations_;
    const SurfaceRecipe& recipe_;
    std::vector<Member> members_;
};

}  // namespace

SurfaceDiagnostics diagnose(IAnalysisFactory& analysis, const WeatherStations& stations,
                            const SurfaceRecipe& recipe) {
    return Diagnosis(analysis, stations, recipe).result();
}

}  // namespace velmora
