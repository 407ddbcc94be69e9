// SPDX-License-Identifier: MIT
#include "check/station_check.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "check/elevation_check.h"
#include "check/extrapolation_check.h"
#include "check/flag_check.h"
#include "check/physics_check.h"
#include "gis/errors.h"
#include "gis/month_names.h"
#include "gis/numbers.h"
#include "modelling/station_fields.h"
#include "modelling/station_surface.h"
#include "precip/precipitation_rules.h"
#include "refet/weather_rules.h"
#include "settings/run_choices.h"

namespace velmora {

namespace {

// A monthly quantity of the weather table that a step uses.
struct Quantity {
    SurfaceRecipe recipe;
    Severity missing;  // when the table lacks its field of a month: how bad that is, what follows
    const char* consequence;
};

// Values above it are suspicious.
double highestLikely(const SurfaceRecipe& recipe) {
    if (recipe.quantity == "SR_") return 45;
    if (recipe.quantity == "WS_") return 15;
    if (recipe.quantity == "P_") return 40;
    return recipe.fromFahrenheit ? 125 : 52;
}

std::vector<Quantity> quantitiesOf(const RunSettings& settings, const CheckScope& scope) {
    std::vector<Quantity> all;
    for (const WeatherQuantity& weather : weatherQuantities(settings)) {
        if (!scope.weather) break;
        all.push_back({weather.recipe, weather.required ? Severity::error : Severity::note,
                       weather.required    ? ""
                       : weather.estimated ? ": the month is estimated"
                                           : ": the month has no such grid"});
    }
    const SurfaceRecipe* recipe = precipitationRecipe(settings);
    if (recipe && scope.precipitation) {
        all.push_back({*recipe, Severity::error, ": the month's precipitation cannot be made"});
    }
    return all;
}

class StationCheck {
  public:
    StationCheck(IPlatform& platform, const RunSettings& settings,
                 const std::optional<GridGeometry>& geometry, const CheckScope& scope)
        : platform_(platform), settings_(settings), geometry_(geometry), scope_(scope) {}

    std::vector<Finding> run() {
        stations_ = opened(settings_.WeatherStations, [&](const std::string& path) {
            return platform_.features().openFeatureClass(path);
        });
        weather_ = opened(settings_.WeatherData, [&](const std::string& path) {
            return platform_.features().openTable(path);
        });
        if (stations_) checkLayer();
        if (weather_ && scope_.weather) appendFindings(checkFlags(*weather_, settings_));
        if (weather_ && requireField(*weather_, kWeatherStationField)) {
            attempt(*weather_, kWeatherStationField, [&] { checkTable(); });
            joined_ = matched_ > 0 ? joined() : nullptr;
            attempt(*weather_, kWeatherStationField, [&] { checkMonths(); });
            if (joined_) {
                appendFindings(checkPhysics(platform_, settings_, *joined_, crs(), scope_));
                if (scope_.weather && !scope_.quick) {
                    appendFindings(checkTrends(settings_, *joined_));
                }
            }
        }
        return findings_;
    }

  private:
    template <class Open>
    auto opened(const std::string& path, Open open) -> decltype(open(path)) {
        try {
            return open(path);
        } catch (const PlatformError& e) {
            add(Severity::error, path, {}, {}, e.what());
            return nullptr;
        }
    }

    void add(Severity severity, const std::string& file, const std::string& field,
             const std::string& station, const std::string& text) {
        findings_.push_back({severity, file, field, station, text});
    }

    void appendFindings(const std::vector<Finding>& more) {
        findings_.insert(findings_.end(), more.begin(), more.end());
    }

    // A check that reads numbers of a field: what cannot be read is an error, and the others go on.
    template <class Check>
    void attempt(const ITable& table, const std::string& field, Check check) {
        try {
            check();
        } catch (const PlatformError& e) {
            if (unreadable_.insert(table.path() + field).second) {
                add(Severity::error, table.path(), field, {}, e.what());
            }
        }
    }
    bool readable(const ITable& table, const std::string& field) const {
        return !unreadable_.contains(table.path() + field);
    }

    bool requireField(const ITable& table, const std::string& field) {
        if (table.fieldIndex(field) >= 0) return true;
        add(Severity::error, table.path(), field, {}, "the field is missing");
        return false;
    }

    void checkLayer() {
        if (stations_->crs().empty()) {
            add(Severity::warning, stations_->path(), {}, {},
                "has no coordinate system (.prj): it is taken to be in the extent provider's");
        }
        const bool named = requireField(*stations_, kStationNameField);
        const bool elevated = requireField(*stations_, kElevationField);
        if (elevated && named) attempt(*stations_, kElevationField, [&] { checkElevations(); });
        if (elevated && geometry_) {
            attempt(*stations_, kElevationField, [&] {
                appendFindings(
                    checkStationElevations(platform_, settings_, *stations_, *geometry_));
            });
        }
        if (named && geometry_) checkPositions();
    }

    std::string stationName(std::size_t record) const {
        return keyText(stations_->value(record, kStationNameField));
    }

    void checkElevations() {
        const double metres = metresIn(siteElevationUnit(settings_));
        for (std::size_t r = 0; r < stations_->recordCount(); ++r) {
            const FieldValue value = stations_->value(r, kElevationField);
            const auto* number = std::get_if<double>(&value);
            if (!number) {
                add(Severity::warning, stations_->path(), kElevationField, stationName(r),
                    "has no elevation, so its temperatures take no part");
            } else if (*number * metres < -450 || *number * metres > 6000) {
                add(Severity::warning, stations_->path(), kElevationField, stationName(r),
                    numberText(*number) + " is not likely in " + settings_.SiteElevationUnit);
            }
        }
    }

    void checkPositions() {
        std::vector<Point> points;
        try {
            points = stations_->points(geometry_->crs);
        } catch (const PlatformError& e) {
            add(Severity::error, stations_->path(), {}, {}, e.what());
            return;
        }
        const Envelope domain = geometry_->extent();
        const double reach = std::max(domain.width(), domain.height());
        std::map<std::pair<double, double>, std::string> seen;
        for (std::size_t r = 0; r < points.size(); ++r) {
            const Point& p = points[r];
            const double dx = std::max({domain.xMin - p.x, 0.0, p.x - domain.xMax});
            const double dy = std::max({domain.yMin - p.y, 0.0, p.y - domain.yMax});
            if (std::hypot(dx, dy) > reach) {
                add(Severity::warning, stations_->path(), {}, stationName(r),
                    "lies " + numberText(std::round(std::hypot(dx, dy) / 1000)) +
                        " km outside the modelling extent");
            }
            const auto [other, fresh] = seen.emplace(std::pair{p.x, p.y}, stationName(r));
            if (!fresh) {
                add(Severity::note, stations_->path(), {}, stationName(r),
                    "stands at the place of " + other->second + ": the mean of both values counts");
            }
        }
    }

    void checkTable() {
        std::set<std::string> stationNames;
        const bool named = stations_ && stations_->fieldIndex(kStationNameField) >= 0;
        for (std::size_t r = 0; named && r < stations_->recordCount(); ++r) {
            if (!stationNames.insert(stationName(r)).second) {
                add(Severity::warning, stations_->path(), kStationNameField, stationName(r),
                    "stands more than once");
            }
        }
        std::set<std::string> keys;
        for (std::size_t r = 0; r < weather_->recordCount(); ++r) {
            const std::string key = keyText(weather_->value(r, kWeatherStationField));
            const bool first = keys.insert(key).second;
            if (!first) {
                add(Severity::warning, weather_->path(), kWeatherStationField, key,
                    "stands more than once: the first record counts");
            }
            if (named && !stationNames.contains(key)) {
                add(Severity::warning, weather_->path(), kWeatherStationField, key,
                    "is no station of " + stations_->path());
            } else if (first) {
                used_.push_back(r);
            }
        }
        for (const std::string& name : stationNames) {
            if (keys.contains(name)) {
                ++matched_;
            } else {
                add(Severity::warning, stations_->path(), kStationNameField, name,
                    "has no record in " + weather_->path());
            }
        }
        if (named && matched_ == 0) {
            add(Severity::error, weather_->path(), kWeatherStationField, {},
                std::string("no record belongs to a station: compare ") + kWeatherStationField +
                    " with the stations' " + kStationNameField);
        }
    }

    // Of the stations' positions.
    std::string crs() const { return geometry_ ? geometry_->crs : stations_->crs(); }

    // The stations as a run joins them, null where that cannot be, which has been told by then.
    std::unique_ptr<WeatherStations> joined() {
        try {
            return std::make_unique<WeatherStations>(platform_, settings_, kTemperatureField,
                                                     crs());
        } catch (const PlatformError& e) {
            if (!hasErrors()) add(Severity::error, stations_->path(), {}, {}, e.what());
            return nullptr;
        }
    }

    bool hasErrors() const {
        return std::ranges::any_of(findings_,
                                   [](const Finding& f) { return f.severity == Severity::error; });
    }

    void checkMonths() {
        const std::vector<Quantity> quantities = quantitiesOf(settings_, scope_);
        for (const int month : settings_.months()) {
            for (const Quantity& quantity : quantities) checkQuantity(quantity, month);
            if (!scope_.weather) continue;
            checkOrder("TN_", "TM_", month, "the minimum is above the maximum temperature");
            if (settings_.HasTdew && settings_.needsFullWeather()) {
                checkOrder("TD_", "TN_", month, "the dew point is above the minimum temperature");
            }
        }
    }

    const double* numberIn(std::size_t record, const std::string& field) {
        value_ = weather_->value(record, field);
        return std::get_if<double>(&value_);
    }

    void checkQuantity(const Quantity& quantity, int month) {
        const std::string field = quantity.recipe.quantity + GetMonthName(month);
        if (weather_->fieldIndex(field) < 0) {
            add(quantity.missing, weather_->path(), field, {},
                std::string("the field is missing") + quantity.consequence);
            return;
        }
        attempt(*weather_, field, [&] {
            if (rainless(quantity.recipe, month)) {
                add(Severity::note, weather_->path(), field, {},
                    "all stations hold 0: a month without rain");
                return;
            }
            checkValues(quantity.recipe, field);
            if (!scope_.quick) checkSurface(quantity.recipe, field, month);
        });
    }

    bool rainless(const SurfaceRecipe& recipe, int month) const {
        return recipe.zerosCount && joined_ &&
               joined_->zeros(joined_->weatherField(recipe.quantity, month)).all();
    }

    void checkValues(const SurfaceRecipe& recipe, const std::string& field) {
        for (const std::size_t r : used_) {
            const std::string station = keyText(weather_->value(r, kWeatherStationField));
            const double* number = numberIn(r, field);
            if (const auto* text = std::get_if<std::string>(&value_); text && !text->empty()) {
                add(Severity::error, weather_->path(), field, station,
                    "holds the text \"" + *text +
                        "\", but it should be a number: make the field a numeric one");
            } else if (!number) {
                add(Severity::note, weather_->path(), field, station, "has no value");
            } else if (!recipe.isRatio() && !recipe.range.holds(*number)) {
                add(Severity::warning, weather_->path(), field, station,
                    numberText(*number) + " is not " + recipe.range.text() + " " + recipe.unit +
                        ", so the station takes no part");
            } else if (*number > highestLikely(recipe)) {
                add(Severity::warning, weather_->path(), field, station,
                    numberText(*number) + " is not likely in " + recipe.unit);
            }
        }
    }

    // Whether the run can make the month's surface of these stations. That of ratios needs the
    // reference grid as well.
    void checkSurface(const SurfaceRecipe& recipe, const std::string& field, int month) {
        if (!joined_ || recipe.isRatio()) return;
        if (recipe.detrended() && stations_->fieldIndex(kElevationField) < 0) return;
        try {
            StationSurface(recipe, *joined_, month).fit();
        } catch (const SurfaceFailure& e) {
            add(Severity::error, weather_->path(), field, {}, e.shortly());
        }
    }

    void checkOrder(const char* lower, const char* upper, int month, const char* text) {
        const std::string low = lower + GetMonthName(month);
        const std::string up = upper + GetMonthName(month);
        if (weather_->fieldIndex(low) < 0 || weather_->fieldIndex(up) < 0) return;
        if (weather_->recordCount() == 0) return;
        attempt(*weather_, low, [&] { weather_->value(0, low); });
        attempt(*weather_, up, [&] { weather_->value(0, up); });
        if (!readable(*weather_, low) || !readable(*weather_, up)) return;
        for (const std::size_t r : used_) {
            const double* first = numberIn(r, low);
            if (!first) continue;
            const double lowValue = *first;
            const double* second = numberIn(r, up);
            if (!second || lowValue <= *second) continue;
            add(Severity::warning, weather_->path(), low,
                keyText(weather_->value(r, kWeatherStationField)),
                numberText(lowValue) + " > " + up + " " + numberText(*second) + ": " + text);
        }
    }

    IPlatform& platform_;
    const RunSettings& settings_;
    const std::optional<GridGeometry>& geometry_;
    const CheckScope scope_;
    std::shared_ptr<IFeatureClass> stations_;
    std::shared_ptr<ITable> weather_;
    std::unique_ptr<WeatherStations> joined_;
    std::size_t matched_ = 0;        // stations that have a record
    std::vector<std::size_t> used_;  // records of the weather table that belong to a station
    FieldValue value_;
    std::set<std::string> unreadable_;  // tables' paths with fields
    std::vector<Finding> findings_;
};

}  // namespace

std::vector<Finding> checkStations(IPlatform& platform, const RunSettings& settings,
                                   const std::optional<GridGeometry>& geometry,
                                   const CheckScope& scope) {
    return StationCheck(platform, settings, geometry, scope).run();
}

}  // namespace velmora
