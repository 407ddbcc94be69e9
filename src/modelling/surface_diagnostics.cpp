// SPDX-License-Identifier: MIT
#include "modelling/surface_diagnostics.h"

#include <algorithm>

#include "gis/errors.h"
#include "gis/numbers.h"

namespace velmora {

namespace {

bool takesPart(const StationSurface& surface, std::size_t station) {
    return std::ranges::binary_search(surface.valid(), station);
}

std::string reasonOf(const StationSurface& surface, std::size_t station) {
    const WeatherStations& stations = surface.stations();
    if (!stations.number(station, surface.field())) return "has no value";
    const auto value = stations.number(station, surface.valueField());
    if (!value) return "has no ratio to the reference grid";
    if (surface.recipe().detrended() && !stations.elevation(station)) return "has no elevation";
    return numberText(*value) + " is not " + surface.recipe().rangeText();
}

class Diagnosis {
  public:
    Diagnosis(IAnalysisFactory& analysis, StationSurface& surface)
        : analysis_(analysis),
          surface_(surface),
          recipe_(surface.recipe()),
          stations_(surface.stations()) {}

    SurfaceDiagnostics result() {
        const StationSurface::Fit& fit = surface_.fit();
        SurfaceDiagnostics found;
        found.surface = surface_.name();
        found.field = surface_.field();
        found.kriged = surface_.kriged();
        found.validStations = surface_.valid().size();
        found.excluded = stationsLeftOut(surface_);
        if (recipe_.detrended()) {
            found.trend = fit.trend;
            found.rSquared =
                rSquared(stations_.pairs(surface_.field(), surface_.valid()), fit.trend);
        }
        found.semivariogram = analysis_.interpolation()->semivariogram(fit.samples);
        for (const std::size_t station : surface_.valid()) {
            std::vector<std::size_t> others = surface_.valid();
            std::erase(others, station);
            leaveOut(station, others, found.leaveOneOut);
        }
        if (recipe_.zerosCount) {
            const std::size_t before = found.leaveOneOut.size();
            for (const std::size_t zero : zeros()) {
                leaveOut(zero, surface_.valid(), found.leaveOneOut);
            }
            found.zeroStations = found.leaveOneOut.size() - before;
        }
        return found;
    }

  private:
    bool takesPart(std::size_t station) const { return velmora::takesPart(surface_, station); }

    // The stations that hold 0 and take no part, where the surface has a value for them.
    std::vector<std::size_t> zeros() const {
        std::vector<std::size_t> found;
        for (std::size_t s = 0; s < stations_.count(); ++s) {
            if (stations_.number(s, surface_.field()) != 0.0 || takesPart(s)) continue;
            if (!recipe_.detrended() || stations_.elevation(s)) found.push_back(s);
        }
        return found;
    }

    // What is interpolated at one place: a grid of one cell around it.
    double interpolatedAt(const Point& at, const std::vector<Sample>& samples) {
        const auto interpolation = analysis_.interpolation();
        useCells(interpolation->environment(), {1, 1, at.x - 0.5, at.y + 0.5, 1, {}});
        float value = kNoData;
        interpolate(*interpolation, recipe_.estimator, samples)
            .raster->read({0, 0, 1, 1}, {&value, 1});
        return static_cast<double>(value);
    }

    // The station's value in the unit of the weather table.
    double observed(std::size_t station, double reference) const {
        if (!takesPart(station)) return 0;
        const double value = stations_.number(station, surface_.valueField()).value();
        return recipe_.isRatio() ? recipe_.backAt(value, {}, 0, reference) : value;
    }

    // A station without which the surface cannot be made has no error of its own.
    void leaveOut(std::size_t station, const std::vector<std::size_t>& others,
                  std::vector<LeftOutStation>& results) {
        const auto reference = surface_.referenceAt(station);
        if (!reference) return;
        try {
            const StationSurface::Fit fit = surface_.fitOf(others);
            const double estimate =
                recipe_.backAt(interpolatedAt(stations_.positions()[station], fit.samples),
                               fit.trend, stations_.elevation(station).value_or(0), *reference);
            results.push_back({stations_.name(station), observed(station, *reference), estimate});
        } catch (const PlatformError&) {
            return;
        }
    }

    IAnalysisFactory& analysis_;
    StationSurface& surface_;
    const SurfaceRecipe& recipe_;
    const WeatherStations& stations_;
};

}  // namespace

std::vector<ExcludedStation> stationsLeftOut(const StationSurface& surface) {
    std::vector<ExcludedStation> found;
    for (std::size_t s = 0; s < surface.stations().count(); ++s) {
        if (!takesPart(surface, s)) {
            found.push_back({surface.stations().name(s), reasonOf(surface, s)});
        }
    }
    return found;
}

SurfaceDiagnostics diagnose(IAnalysisFactory& analysis, StationSurface& surface) {
    return Diagnosis(analysis, surface).result();
}

}  // namespace velmora
