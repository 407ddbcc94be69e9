// SPDX-License-Identifier: MIT
#include "refet/weather_surfaces.h"

#include <algorithm>

#include "gis/errors.h"
#include "gis/month_names.h"
#include "modelling/station_interpolation.h"
#include "modelling/surface_diagnostics.h"

namespace velmora {

namespace {

constexpr const char* kWorkingField = "TempTTT";

bool inFahrenheit(const std::string& unit) { return unit == "Degree F"; }

}  // namespace

WeatherSurfaces::WeatherSurfaces(IPlatform& platform, const RunSettings& settings,
                                 const GridGeometry& geometry, RasterPtr dem,
                                 IDiagnostics* diagnostics)
    : settings_(settings),
      analysis_(platform.analysis()),
      diagnostics_(diagnostics),
      stations_(platform, settings, kWorkingField, geometry.crs) {
    stations_.requireElevations();
    interpolation_ = platform.analysis().interpolation();
    algebra_ = platform.analysis().mapAlgebra();
    useCells(interpolation_->environment(), geometry);
    useCells(algebra_->environment(), geometry);
    algebra_->BindRaster(std::move(dem), "DEM");
}

void WeatherSurfaces::make(int begin, int end, IRasterWorkspace& workspace,
                           const std::function<void(const std::string&)>& report) {
    if (end < std::max(1, begin)) return;
    std::string failure;
    try {
        prepareNeighbour(begin - 1);
        for (int month = std::max(1, begin); month <= end; ++month) prepareMonth(month);
        prepareNeighbour(end + 1);
    } catch (const PlatformError& e) {
        failure = e.what();
    }
    workspace.save(prepared_);
    for (const RasterToSave& saved : prepared_) made_.insert(saved.name);
    for (const std::string& line : reports_) report(line);
    prepared_.clear();
    reports_.clear();
    if (!failure.empty()) throw PlatformError(failure);
}

void WeatherSurfaces::prepareMonth(int month) {
    prepareTemperature("TM_", month);
    prepareTemperature("TN_", month);
    if (settings_.HasTmean && hasField("TA_", month)) prepareTemperature("TA_", month);
    if (!settings_.needsFullWeather()) return;
    if (settings_.HasTdew && hasField("TD_", month)) prepareTemperature("TD_", month);
    if (settings_.HasSR && hasField("SR_", month)) prepareDirect("SR_", "Soalr radiation", month);
    if (settings_.HasWS && hasField("WS_", month)) prepareDirect("WS_", "Wind Speed", month);
}

// A month outside the run, whose temperatures the soil heat flux of the run's first or last month
// uses: without valid stations it only counts as missing.
void WeatherSurfaces::prepareNeighbour(int month) {
    const std::size_t before = prepared_.size();
    if (month < 1 || month > 12 || !hasField("TM_", month) || !hasField("TN_", month)) return;
    try {
        prepareTemperature("TM_", month);
        prepareTemperature("TN_", month);
    } catch (const PlatformError&) {
        prepared_.resize(before);
        reports_.resize(before);
    }
}

bool WeatherSurfaces::hasField(const std::string& prefix, int month) const {
    return stations_.hasField(stations_.weatherField(prefix, month));
}

void WeatherSurfaces::prepareTemperature(const std::string& prefix, int month) {
    const std::string surface = prefix + GetMonthName(month);
    const std::string name = stations_.weatherField(prefix, month);
    const bool fahrenheit = inFahrenheit(settings_.TemperatureUnit);
    std::vector<std::size_t> valid =
        fahrenheit ? stations_.between(name, 0, 150) : stations_.between(name, -20, 80);
    const LinearTrend trend = stations_.detrendFor(surface, name, month, valid);
    const RasterPtr residuals =
        inverseDistanceSurface(*interpolation_, stations_.samples(valid, stations_.workingField()));
    prepared_.push_back({surface, retrended(residuals, trend), "GRID"});
    reports_.push_back(surface + " is ready...");
    if (diagnostics_) {
        diagnostics_->add(diagnose(analysis_, stations_,
                                   {surface,
                                    name,
                                    name,
                                    valid,
                                    fahrenheit ? "between 0 and 150" : "between -20 and 80",
                                    true,
                                    false,
                                    false,
                                    false,
                                    {}}));
    }
}

RasterPtr WeatherSurfaces::retrended(const RasterPtr& residuals, const LinearTrend& trend) {
    algebra_->BindRaster(residuals, "T");
    const std::string line = retrendExpression("T", trend);
    return algebra_->Execute(
        inFahrenheit(settings_.TemperatureUnit) ? "5.0 / 9.0 * ( " + line + " - 32.0)" : line);
}

void WeatherSurfaces::prepareDirect(const std::string& prefix, const std::string& title,
                                    int month) {
    const std::string surface = prefix + GetMonthName(month);
    const std::string name = stations_.weatherField(prefix, month);
    const std::vector<std::size_t> valid = stations_.between(name, 0, 500);
    if (valid.empty()) {
        throw surfaceFailure(surface, name, month, 0, "at least one must be above 0 and below 500");
    }
    prepared_.push_back(
        {surface, inverseDistanceSurface(*interpolation_, stations_.samples(valid, name)), "GRID"});
    reports_.push_back("Interpolation of <" + title + "> is done!");
}

}  // namespace velmora
