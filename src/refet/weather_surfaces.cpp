// SPDX-License-Identifier: MIT
#include "refet/weather_surfaces.h"

#include <algorithm>

#include "gis/errors.h"
#include "gis/month_names.h"
#include "gis/numbers.h"
#include "gis/text.h"

namespace velmora {

namespace {

constexpr double kPower = 2.0;
constexpr int kNearestStations = 12;
constexpr const char* kWorkingField = "TempTTT";

bool inFeet(const std::string& unit) { return unit == "Feet"; }
bool inFahrenheit(const std::string& unit) { return unit == "Degree F"; }

// A few values of a key field, for a message.
std::string someKeys(const ITable& table, const std::string& field) {
    std::vector<std::string> keys;
    for (std::size_t r = 0; r < std::min<std::size_t>(3, table.recordCount()); ++r) {
        keys.push_back("\"" + keyText(table.value(r, field)) + "\"");
    }
    return keys.empty() ? "no record" : joinedNames(keys);
}

}  // namespace

WeatherSurfaces::WeatherSurfaces(IPlatform& platform, const RunSettings& settings,
                                 const GridGeometry& geometry, RasterPtr dem)
    : platform_(platform), settings_(settings) {
    const auto layer = platform.features().openFeatureClass(settings.WeatherStations);
    const auto table = platform.features().openTable(settings.WeatherData);
    stations_ = platform.memoryRelationships().open(
        {"JoinTable", table, "STN", layer, "staname", "Forward", "Backward"});
    if (layer->fieldIndex("ELEVATION") < 0) {
        throw PlatformError("The station shapefile " + layer->path() +
                            " has no field ELEVATION: add the stations' elevations");
    }
    if (stations_->matchedRecords() == 0) {
        throw PlatformError(
            "No station of " + layer->path() + " (field staname: " + someKeys(*layer, "staname") +
            ") has a record in " + table->path() + " (field STN: " + someKeys(*table, "STN") + ")");
    }
    tableName_ = table->name();
    layerName_ = layer->name();
    positions_ = layer->points(geometry.crs);
    workingField_.resize(positions_.size());
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

std::string WeatherSurfaces::field(const std::string& prefix, int month) const {
    return tableName_ + "." + prefix + GetMonthName(month);
}

bool WeatherSurfaces::hasField(const std::string& prefix, int month) const {
    return stations_->hasField(field(prefix, month));
}

std::vector<std::size_t> WeatherSurfaces::validStations(const std::string& name, double low,
                                                        double high) const {
    if (!stations_->hasField(name)) {
        throw PlatformError("The weather table " + settings_.WeatherData + " has no field " +
                            name.substr(tableName_.size() + 1));
    }
    const std::string bracketed = "[" + name + "]";
    return stations_->select(bracketed + " > " + numberText(low) + " AND " + bracketed + " < " +
                             numberText(high));
}

// Stations without an elevation take no part; they are dropped from `stations`.
std::vector<ElevationPair> WeatherSurfaces::elevationPairs(std::vector<std::size_t>& stations,
                                                           const std::string& name) const {
    const double toMetres = inFeet(settings_.SiteElevationUnit) ? 0.3048 : 1.0;
    std::vector<ElevationPair> pairs;
    std::vector<std::size_t> kept;
    for (const std::size_t station : stations) {
        const FieldValue elevation = stations_->value(station, layerName_ + ".elevation");
        const FieldValue value = stations_->value(station, name);
        if (!std::holds_alternative<double>(elevation)) continue;
        pairs.push_back({std::get<double>(elevation) * toMetres, std::get<double>(value)});
        kept.push_back(station);
    }
    stations = kept;
    return pairs;
}

std::vector<Sample> WeatherSurfaces::samplesAt(
    const std::vector<std::size_t>& stations,
    const std::vector<std::optional<double>>& values) const {
    std::vector<Sample> samples;
    for (std::size_t i = 0; i < stations.size(); ++i) {
        if (values[i]) samples.push_back({positions_[stations[i]], *values[i]});
    }
    return samples;
}

void WeatherSurfaces::prepareTemperature(const std::string& prefix, int month) {
    const std::string name = field(prefix, month);
    const bool fahrenheit = inFahrenheit(settings_.TemperatureUnit);
    std::vector<std::size_t> valid =
        fahrenheit ? validStations(name, 0, 150) : validStations(name, -20, 80);
    LinearTrend trend;
    try {
        trend = fitLinearTrend(elevationPairs(valid, name));
    } catch (const PlatformError& e) {
        throw PlatformError("The surface " + prefix + GetMonthName(month) + " (field " + name +
                            ", month " + GetMonthName(month) + ") has " +
                            std::to_string(valid.size()) + " valid stations: " + e.what());
    }
    const std::string toMetres = inFeet(settings_.SiteElevationUnit) ? " * 0.3048" : "";
    const std::vector<std::optional<double>> residuals = platform_.calculator().calculate(
        *stations_, valid,
        "[" + name + "]-" + numberText(trend.b) + " * [" + layerName_ + ".ELEVATION]" + toMetres +
            " -" + numberText(trend.a));
    std::fill(workingField_.begin(), workingField_.end(), std::nullopt);
    for (std::size_t i = 0; i < valid.size(); ++i) workingField_[valid[i]] = residuals[i];
    const RasterPtr surface = retrended(
        interpolation_->IDW(samplesAt(valid, residuals), kPower, kNearestStations), trend);
    prepared_.push_back({prefix + GetMonthName(month), surface, "GRID"});
    reports_.push_back(prefix + GetMonthName(month) + " is ready...");
}

RasterPtr WeatherSurfaces::retrended(const RasterPtr& residuals, const LinearTrend& trend) {
    algebra_->BindRaster(residuals, "T");
    const std::string line =
        "[T] + " + numberText(trend.a) + " + " + numberText(trend.b) + " * [DEM] ";
    return algebra_->Execute(
        inFahrenheit(settings_.TemperatureUnit) ? "5.0 / 9.0 * ( " + line + " - 32.0)" : line);
}

void WeatherSurfaces::prepareDirect(const std::string& prefix, const std::string& title,
                                    int month) {
    const std::string name = field(prefix, month);
    const std::vector<std::size_t> valid = validStations(name, 0, 500);
    if (valid.empty()) {
        throw PlatformError("The surface " + prefix + GetMonthName(month) + " (field " + name +
                            ", month " + GetMonthName(month) +
                            ") has 0 valid stations: at least one must be above 0 and below 500");
    }
    const auto values = platform_.calculator().calculate(*stations_, valid, "[" + name + "]");
    prepared_.push_back({prefix + GetMonthName(month),
                         interpolation_->IDW(samplesAt(valid, values), kPower, kNearestStations),
                         "GRID"});
    reports_.push_back("Interpolation of <" + title + "> is done!");
}

void WeatherSurfaces::storeWorkingField() {
    const auto session = platform_.features().edit(stations_->layer());
    session->addNumericField(kWorkingField);
    for (std::size_t station = 0; station < workingField_.size(); ++station) {
        const auto& value = workingField_[station];
        session->setValue(station, kWorkingField, value ? FieldValue(*value) : FieldValue());
    }
    session->save();
}

}  // namespace velmora
