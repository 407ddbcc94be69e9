// SPDX-License-Identifier: MIT
// The surface of one month that a recipe makes over the stations, and the parts of making it, which
// the diagnosis goes through again without a station.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "modelling/surface_recipe.h"
#include "modelling/weather_stations.h"

namespace velmora {

// Why a surface of a month cannot be made: what() names surface, field, month and valid stations.
class SurfaceFailure : public PlatformError {
  public:
    // `place` is the month's field of the weather table, which the join calls `qualified`.
    SurfaceFailure(const std::string& surface, const std::string& qualified,
                   const ErrorPlace& place, std::size_t validStations, const std::string& reason);
    // The same without surface, field and month: "has 1 valid station: ...".
    const std::string& shortly() const { return shortly_; }

  private:
    std::string shortly_;
};

// What a month's ratios are made to.
struct ReferenceValues {
    std::string path;                           // of the grid, for messages
    std::vector<std::optional<double>> values;  // at the stations
};

class StationSurface {
  public:
    // Selects the stations that take part. For ratios the working field of the stations must hold
    // the reference values, and holds the ratios afterwards. The recipe and the stations must
    // outlive it. Throws PlatformError when the weather table has no such field.
    StationSurface(const SurfaceRecipe& recipe, WeatherStations& stations, int month,
                   ReferenceValues reference = {});

    const SurfaceRecipe& recipe() const { return recipe_; }
    const WeatherStations& stations() const { return stations_; }
    const std::string& name() const { return name_; }    // "PPT_Jan"
    const std::string& field() const { return field_; }  // "weather.P_Jan"
    // The field whose values are detrended, or interpolated as they are.
    std::string valueField() const;
    // The stations that take part, ascending.
    const std::vector<std::size_t>& valid() const { return valid_; }

    // The line over elevation and what is interpolated; after fit() of all valid stations.
    struct Fit {
        LinearTrend trend;
        std::vector<Sample> samples;
    };
    // Leaves out stations without an elevation where that is needed, and puts what the line leaves
    // of the others into the working field. Throws SurfaceFailure when the surface cannot be made.
    const Fit& fit();
    // The same of some stations, which touches no field; the failure of the line alone.
    Fit fitOf(const std::vector<std::size_t>& stations) const;

    // The grid. In `algebra` what the recipe goes back with must be bound: the DEM in metres or the
    // reference grid. Throws SurfaceFailure when it cannot be made.
    RasterPtr make(IInterpolationOp& interpolation, IMapAlgebraOp& algebra);
    bool kriged() const { return kriged_; }  // as make() went
    // The line over elevation, once it has been fitted; nothing for values that are not detrended.
    std::optional<LinearTrend> trend() const {
        return fit_ && recipe_.detrended() ? std::optional(fit_->trend) : std::nullopt;
    }

    // What backAt() takes as the reference at a station; nothing where the grid has no value.
    std::optional<double> referenceAt(std::size_t station) const;

  private:
    SurfaceFailure failure(const std::string& reason) const;

    const SurfaceRecipe& recipe_;
    WeatherStations& stations_;
    int month_;
    ReferenceValues reference_;
    std::string name_;
    std::string field_;
    std::vector<std::size_t> valid_;
    std::optional<Fit> fit_;
    bool kriged_ = false;
};

}  // namespace velmora
