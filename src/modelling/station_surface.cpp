// SPDX-License-Identifier: MIT
#include "modelling/station_surface.h"

#include <numeric>
#include <utility>

#include "gis/month_names.h"
#include "gis/text.h"

namespace velmora {

SurfaceFailure::SurfaceFailure(const std::string& surface, const std::string& qualified,
                               const ErrorPlace& place, std::size_t validStations,
                               const std::string& reason)
    : PlatformError("The surface " + surface + " (field " + qualified + ", month " +
                        GetMonthName(place.month) + ") has " +
                        counted(validStations, "valid station") + ": " + reason,
                    place),
      shortly_("has " + counted(validStations, "valid station") + ": " + reason) {}

StationSurface::StationSurface(const SurfaceRecipe& recipe, WeatherStations& stations, int month,
                               ReferenceValues reference)
    : recipe_(recipe),
      stations_(stations),
      month_(month),
      reference_(std::move(reference)),
      name_(recipe.grid + GetMonthName(month)),
      field_(stations.weatherField(recipe.quantity, month)) {
    stations_.requireWeatherField(field_);
    if (recipe_.isRatio()) {
        std::vector<std::size_t> all(stations_.count());
        std::iota(all.begin(), all.end(), 0);
        stations_.calculate(all, recipe_.ratioExpression(field_, stations_.workingField()));
    }
    valid_ = stations_.selected(recipe_.range.clause(valueField()));
}

std::string StationSurface::valueField() const {
    return recipe_.isRatio() ? stations_.workingField() : field_;
}

SurfaceFailure StationSurface::failure(const std::string& reason) const {
    const ErrorPlace place{.file = stations_.weatherTable(),
                           .field = recipe_.quantity + GetMonthName(month_),
                           .month = month_};
    return {name_, field_, place, valid_.size(),
            reason + (recipe_.zerosCount ? stations_.zerosText(field_) : std::string())};
}

const StationSurface::Fit& StationSurface::fit() {
    if (fit_) return *fit_;
    if (recipe_.detrended()) {
        std::erase_if(valid_, [&](std::size_t s) { return !stations_.elevation(s); });
        try {
            fit_ = Fit{stations_.detrend(field_, valid_), {}};
        } catch (const PlatformError& e) {
            throw failure(e.what());
        }
        fit_->samples = stations_.samples(valid_, stations_.workingField());
        return *fit_;
    }
    if (valid_.empty()) {
        throw failure(recipe_.isRatio() ? "no ratio of a station to the reference grid " +
                                              reference_.path + " is " + recipe_.range.limits()
                                        : "at least one must be " + recipe_.range.limits());
    }
    fit_ = fitOf(valid_);
    return *fit_;
}

StationSurface::Fit StationSurface::fitOf(const std::vector<std::size_t>& stations) const {
    if (!recipe_.detrended()) return {{}, stations_.samples(stations, valueField())};
    const LinearTrend trend = stations_.trendOf(field_, stations);
    const auto values = stations_.residuals(field_, stations, trend);
    Fit fit{trend, {}};
    for (std::size_t i = 0; i < stations.size(); ++i) {
        if (values[i]) fit.samples.push_back({stations_.positions()[stations[i]], *values[i]});
    }
    return fit;
}

RasterPtr StationSurface::make(IInterpolationOp& interpolation, IMapAlgebraOp& algebra) {
    const Fit& made = fit();
    const Interpolated surface = interpolate(interpolation, recipe_.estimator, made.samples);
    kriged_ = surface.kriged;
    return recipe_.back(algebra, surface.raster, made.trend);
}

std::optional<double> StationSurface::referenceAt(std::size_t station) const {
    return recipe_.isRatio() ? reference_.values.at(station) : std::optional(0.0);
}

}  // namespace velmora
