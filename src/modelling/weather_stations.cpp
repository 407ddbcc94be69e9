// SPDX-License-Identifier: MIT
#include "modelling/weather_stations.h"

#include <algorithm>
#include <tuple>

#include "gis/month_names.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "gis/units.h"
#include "modelling/station_fields.h"
#include "settings/run_choices.h"

namespace velmora {

namespace {

// A key field and a few of its values, for a message: "field STN: "Logan", "Moore"".
std::string someKeys(const ITable& table, const std::string& field) {
    std::vector<std::string> keys;
    for (std::size_t r = 0; r < std::min<std::size_t>(3, table.recordCount()); ++r) {
        keys.push_back("\"" + keyText(table.value(r, field)) + "\"");
    }
    return "field " + field + ": " + (keys.empty() ? "no record" : joinedNames(keys));
}

}  // namespace

std::vector<ElevationPair> pairsByPosition(std::vector<StationValue> stations) {
    std::ranges::sort(stations, {}, [](const StationValue& s) {
        return std::tuple(s.at.x, s.at.y, s.elevation, s.value);
    });
    std::vector<ElevationPair> pairs;
    for (const StationValue& s : stations) pairs.push_back({s.elevation, s.value});
    return pairs;
}

WeatherStations::WeatherStations(IPlatform& platform, const RunSettings& settings,
                                 const std::string& workingField, const std::string& crs)
    : platform_(platform), settings_(settings), workingField_(workingField) {
    layer_ = std::make_shared<WorkingLayer>(
        platform.features().openFeatureClass(settings.WeatherStations), workingField);
    table_ = platform.features().openTable(settings.WeatherData);
    joined_ =
        platform.memoryRelationships().open({"JoinTable", table_, kWeatherStationField, layer_,
                                             kStationNameField, "Forward", "Backward"});
    if (joined_->matchedRecords() == 0) {
        throw PlatformError("No station of " + layer_->path() + " (" +
                                someKeys(*layer_, kStationNameField) + ") has a record in " +
                                table_->path() + " (" + someKeys(*table_, kWeatherStationField) +
                                ")",
                            {.file = table_->path(), .field = kWeatherStationField});
    }
    positions_ = layer_->points(crs);
}

std::string WeatherStations::weatherField(const std::string& prefix, int month) const {
    return table_->name() + "." + prefix + GetMonthName(month);
}

std::string WeatherStations::layerField(const std::string& field) const {
    return layer_->name() + "." + field;
}

void WeatherStations::requireWeatherField(const std::string& qualified) const {
    if (joined_->hasField(qualified)) return;
    const std::string field = qualified.substr(table_->name().size() + 1);
    throw PlatformError("The weather table " + settings_.WeatherData + " has no field " + field,
                        {.file = settings_.WeatherData, .field = field});
}

void WeatherStations::requireElevations() const {
    if (layer_->fieldIndex(kElevationField) >= 0) return;
    throw PlatformError("The station shapefile " + layer_->path() + " has no field " +
                            kElevationField + ": add the stations' elevations",
                        {.file = layer_->path(), .field = kElevationField});
}

std::string WeatherStations::name(std::size_t station) const {
    return keyText(layer_->value(station, kStationNameField));
}

std::string WeatherStations::stationAt(const ErrorPlace& place) const {
    const ITable* table = place.file == table_->path() ? table_.get() : layer_.get();
    const char* field = table == layer_.get() ? kStationNameField : kWeatherStationField;
    const bool known = place.record > 0 && place.record <= table->recordCount();
    return known ? keyText(table->value(place.record - 1, field)) : std::string();
}

template <class Body>
auto WeatherStations::namingStation(Body body) const {
    try {
        return body();
    } catch (const PlatformError& e) {
        ErrorPlace place = e.place();
        place.station = stationAt(place);
        throw PlatformError(e.what(), place);
    }
}

std::optional<double> WeatherStations::number(std::size_t station,
                                              const std::string& qualified) const {
    const FieldValue value = namingStation([&] { return joined_->value(station, qualified); });
    const auto* found = std::get_if<double>(&value);
    return found ? std::optional(*found) : std::nullopt;
}

std::optional<double> WeatherStations::elevation(std::size_t station) const {
    const auto stored = number(station, layerField(kElevationField));
    if (!stored) return std::nullopt;
    return *stored * metresIn(siteElevationUnit(settings_));
}

std::vector<std::size_t> WeatherStations::selected(const std::string& whereClause) const {
    return namingStation([&] { return joined_->select(whereClause); });
}

WeatherStations::Zeros WeatherStations::zeros(const std::string& qualified) const {
    Zeros zeros;
    for (std::size_t station = 0; station < count(); ++station) {
        const auto value = number(station, qualified);
        if (value) ++zeros.stations;
        if (value == 0.0) ++zeros.zero;
    }
    return zeros;
}

std::string WeatherStations::zerosText(const std::string& qualified) const {
    const std::size_t zero = zeros(qualified).zero;
    if (zero == 0) return {};
    return "; " + std::to_string(zero) + (zero == 1 ? " station holds 0" : " stations hold 0");
}

std::vector<ElevationPair> WeatherStations::pairs(const std::string& qualified,
                                                  const std::vector<std::size_t>& stations) const {
    std::vector<StationValue> values;
    for (const std::size_t station : stations) {
        values.push_back(
            {positions_[station], elevation(station).value(), number(station, qualified).value()});
    }
    return pairsByPosition(std::move(values));
}

LinearTrend WeatherStations::trendOf(const std::string& qualified,
                                     const std::vector<std::size_t>& stations) const {
    return fitLinearTrend(pairs(qualified, stations));
}

std::vector<std::optional<double>> WeatherStations::residuals(
    const std::string& qualified, const std::vector<std::size_t>& stations,
    const LinearTrend& trend) const {
    const bool inFeet = siteElevationUnit(settings_) == LengthUnit::feet;
    return platform_.calculator().calculate(
        *joined_, stations,
        "[" + qualified + "]-" + numberText(trend.b) + " * [" + layerField(kElevationField) + "]" +
            (inFeet ? " * " + numberText(kMetresPerFoot) : "") + " -" + numberText(trend.a));
}

LinearTrend WeatherStations::detrend(const std::string& qualified,
                                     const std::vector<std::size_t>& stations) {
    const LinearTrend trend = trendOf(qualified, stations);
    setWorkingValues(stations, residuals(qualified, stations, trend));
    return trend;
}

void WeatherStations::calculate(const std::vector<std::size_t>& stations,
                                const std::string& expression) {
    setWorkingValues(stations, namingStation([&] {
                         return platform_.calculator().calculate(*joined_, stations, expression);
                     }));
}

void WeatherStations::setWorkingValues(const std::vector<std::size_t>& stations,
                                       const std::vector<std::optional<double>>& values) {
    for (std::size_t i = 0; i < stations.size(); ++i) {
        layer_->setValue(stations[i], values[i] ? FieldValue(*values[i]) : FieldValue());
    }
}

std::vector<Sample> WeatherStations::samples(const std::vector<std::size_t>& stations,
                                             const std::string& qualified) const {
    std::vector<Sample> samples;
    for (const std::size_t station : stations) {
        if (const auto value = number(station, qualified)) {
            samples.push_back({positions_[station], *value});
        }
    }
    return samples;
}

void WeatherStations::storeWorkingField(IApplication& application) {
    if (!layer_->takesEdits()) {
        application.feedback().warning("The working field " + workingField_ +
                                       " is kept in memory only: " + layer_->path() +
                                       " has no dBASE table of its own that can be written to");
        return;
    }
    try {
        layer_->store(platform_.features());
    } catch (const PlatformError& e) {
        application.prompts().failure("The working field " + workingField_ +
                                      " is not stored: " + std::string(e.what()));
    }
}

}  // namespace velmora
