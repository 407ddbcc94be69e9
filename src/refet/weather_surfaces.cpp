// SPDX-License-Identifier: MIT
#include "refet/weather_surfaces.h"

#include <algorithm>
#include <exception>

#include "gis/errors.h"
#include "gis/month_names.h"
#include "modelling/station_surface.h"
#include "modelling/surface_diagnostics.h"

namespace velmora {

namespace {

constexpr std::size_t kCellsOfASave = 250'000'000;  // some seconds

}  // namespace

WeatherSurfaces::WeatherSurfaces(IPlatform& platform, const RunSettings& settings,
                                 const GridGeometry& geometry, RasterPtr dem,
                                 IDiagnostics* diagnostics, RunRecord* record)
    : quantities_(weatherQuantities(settings)),
      analysis_(platform.analysis()),
      diagnostics_(diagnostics),
      record_(record),
      stations_(platform, settings, kTemperatureField, geometry.crs),
      cells_(geometry.cells()) {
    stations_.requireElevations();
    interpolation_ = platform.analysis().interpolation();
    algebra_ = platform.analysis().mapAlgebra();
    useCells(interpolation_->environment(), geometry);
    useCells(algebra_->environment(), geometry);
    algebra_->BindRaster(std::move(dem), "DEM");
}

void WeatherSurfaces::make(int begin, int end, IRasterWorkspace& workspace, IFeedback& feedback) {
    if (end < std::max(1, begin)) return;
    std::exception_ptr failure;
    try {
        prepareNeighbour(begin - 1);
        for (int month = std::max(1, begin); month <= end; ++month) {
            throwIfCancelled(feedback);
            prepareMonth(month);
            if (month < end) saveWhenLarge(workspace, feedback);
        }
        prepareNeighbour(end + 1);
    } catch (const PlatformError&) {
        failure = std::current_exception();
    }
    save(workspace, feedback);
    if (failure) std::rethrow_exception(failure);
}

void WeatherSurfaces::saveWhenLarge(IRasterWorkspace& workspace, IFeedback& feedback) {
    if (cells_ * prepared_.size() >= kCellsOfASave) save(workspace, feedback);
}

void WeatherSurfaces::save(IRasterWorkspace& workspace, IFeedback& feedback) {
    workspace.save(prepared_);
    for (const RasterToSave& saved : prepared_) made_.insert(saved.name);
    for (const std::string& line : reports_) feedback.setMessage(line);
    prepared_.clear();
    reports_.clear();
}

void WeatherSurfaces::prepareMonth(int month) {
    for (const WeatherQuantity& quantity : quantities_) {
        if (quantity.required || hasField(quantity, month)) prepare(quantity, month);
    }
}

// A month outside the run, whose temperatures the soil heat flux of the run's first or last month
// uses: without valid stations it only counts as missing.
void WeatherSurfaces::prepareNeighbour(int month) {
    if (month < 1 || month > 12) return;
    for (const WeatherQuantity& quantity : quantities_) {
        if (quantity.required && !hasField(quantity, month)) return;
    }
    const std::size_t before = prepared_.size();
    try {
        for (const WeatherQuantity& quantity : quantities_) {
            if (quantity.required) prepare(quantity, month);
        }
    } catch (const SurfaceFailure&) {
        prepared_.resize(before);
        reports_.resize(before);
    }
}

bool WeatherSurfaces::hasField(const WeatherQuantity& quantity, int month) const {
    return stations_.hasField(stations_.weatherField(quantity.recipe.quantity, month));
}

void WeatherSurfaces::prepare(const WeatherQuantity& quantity, int month) {
    StationSurface surface(quantity.recipe, stations_, month);
    prepared_.push_back({surface.name(), surface.make(*interpolation_, *algebra_), "GRID"});
    reports_.push_back(quantity.title.empty()
                           ? surface.name() + " is ready..."
                           : "Interpolation of <" + quantity.title + "> is done!");
    grounds_[surface.name()] = groundOf(surface);
    if (record_) record_->surface(surface);
    if (diagnostics_ && quantity.recipe.detrended()) {
        diagnostics_->add(diagnose(analysis_, surface));
    }
}

}  // namespace velmora
