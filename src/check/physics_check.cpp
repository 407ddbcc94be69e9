// SPDX-License-Identifier: MIT
#include "check/physics_check.h"

#include <cmath>
#include <functional>
#include <optional>

#include "check/acres.h"
#include "check/likely_unit.h"
#include "gis/errors.h"
#include "gis/month_names.h"
#include "gis/numbers.h"
#include "refet/equations/failure.h"
#include "refet/equations/solar_radiation.h"
#include "settings/run_choices.h"

namespace velmora {

namespace {

constexpr int kGeographicNad83 = 4269;
constexpr double kLeastShare = 0.2;  // of the extraterrestrial radiation; at most all of it
constexpr double kTropics = 25;      // degrees; beyond them months are summer or winter
constexpr double kRounding = 1e-6;

class PhysicsCheck {
  public:
    PhysicsCheck(IPlatform& platform, const RunSettings& settings, const WeatherStations& stations)
        : platform_(platform), settings_(settings), stations_(stations) {}

    std::vector<Finding> run(const std::string& crs, const CheckScope& scope) {
        findLatitudes(crs);
        const bool full = scope.weather && settings_.needsFullWeather();
        if (scope.weather) attempt([this] { checkTemperatures(); });
        if (full && settings_.HasTdew) attempt([this] { checkDewPoints(); });
        if (full && settings_.HasSR) attempt([this] { checkRadiation(); });
        if (full && settings_.HasWS) attempt([this] { checkWind(); });
        if (scope.precipitation) attempt([this] { checkPrecipitation(); });
        return findings_;
    }

  private:
    void add(Severity severity, const std::string& field, const std::string& station,
             const std::string& text) {
        findings_.push_back({severity, stations_.weatherTable(), field, station, text});
    }

    // Numbers that cannot be read have mostly been told by then.
    void attempt(const std::function<void()>& check) {
        try {
            check();
        } catch (const PlatformError& e) {
            findings_.push_back(
                {Severity::error, stations_.weatherTable(), {}, {}, e.what(), true});
        }
    }

    void findLatitudes(const std::string& crs) {
        if (crs.empty()) return;
        ISpatialReferenceFactory& systems = platform_.spatialReferences();
        std::vector<Point> places;
        attempt([&] {
            const std::string geographic = systems.createGeographic(kGeographicNad83);
            try {
                places = systems.project(stations_.positions(), crs, geographic);
            } catch (const PlatformError&) {
                places.clear();  // a station far out, which a run does not mind
            }
        });
        for (const Point& p : places) latitudes_.push_back(p.y);
    }

    std::optional<double> number(std::size_t station, const std::string& prefix, int month) const {
        const std::string field = stations_.weatherField(prefix, month);
        return stations_.hasField(field) ? stations_.number(station, field) : std::nullopt;
    }

    std::vector<double> numbers(const std::string& prefix, int month) const {
        std::vector<double> all;
        for (std::size_t s = 0; s < stations_.count(); ++s) {
            if (const auto value = number(s, prefix, month)) all.push_back(*value);
        }
        return all;
    }
    std::vector<double> numbers(const std::string& prefix) const {
        std::vector<double> all;
        for (const int month : settings_.months()) {
            const auto more = numbers(prefix, month);
            all.insert(all.end(), more.begin(), more.end());
        }
        return all;
    }

    // Beyond the tropics, by the middle of the stations; neither where latitudes are not known.
    bool isSeason(int month, bool summer) const {
        if (latitudes_.empty()) return false;
        const double latitude = middleOf(latitudes_);
        if (std::fabs(latitude) < kTropics) return false;
        const bool northern = month >= 5 && month <= 9;
        const bool southern = month >= 11 || month <= 3;
        return (latitude > 0) == summer ? northern : southern;
    }

    void checkTemperatures() {
        const bool fahrenheit = temperatureUnit(settings_) == TemperatureUnit::fahrenheit;
        for (const int month : settings_.months()) {
            const auto values = numbers("TM_", month);
            if (values.empty()) continue;
            const double middle = middleOf(values);
            const bool other = fahrenheit ? looksLikeCelsius(middle, isSeason(month, true))
                                          : looksLikeFahrenheit(middle, isSeason(month, false));
            if (!other) continue;
            const TemperatureUnit likely =
                fahrenheit ? TemperatureUnit::celsius : TemperatureUnit::fahrenheit;
            add(Severity::warning, "TM_" + GetMonthName(month), {},
                roundedText(middle) + (fahrenheit ? " deg F" : " deg C") +
                    " is the middle of the stations, which is not likely in this month: is "
                    "TemperatureUnit=" +
                    textOf(likely) + " meant?");
            return;
        }
    }

    void checkDewPoints() {
        for (const int month : settings_.months()) {
            for (std::size_t s = 0; s < stations_.count(); ++s) checkDewPoint(s, month);
        }
    }

    void checkDewPoint(std::size_t station, int month) {
        const auto dew = number(station, "TD_", month);
        const auto highest = number(station, "TM_", month);
        const auto lowest = number(station, "TN_", month);
        if (!dew || !highest || !lowest) return;
        const double mean = (*highest + *lowest) / 2;
        if (*dew <= mean + kRounding) return;
        const bool all = *dew > *highest + kRounding;
        add(Severity::warning, "TD_" + GetMonthName(month), stations_.name(station),
            all ? numberText(*dew) + " is above the maximum temperature " + numberText(*highest) +
                      ": no air is so moist"
                : numberText(*dew) + " is above the mean temperature " + roundedText(mean) +
                      ": air at its mean would be more than saturated");
    }

    // Nothing where the station's latitude is not known, or where the sun does not set or rise.
    std::optional<double> extraterrestrial(std::size_t station, int month) const {
        if (latitudes_.empty()) return std::nullopt;
        const int year = settings_.yearNumber();
        try {
            return ExtraterrestrialRadiation(latitudes_[station],
                                             {representativeDay(month, year), month, year});
        } catch (const EquationError&) {
            return std::nullopt;
        }
    }

    void checkRadiation() {
        std::vector<Finding> single;
        std::vector<double> shares;
        for (const int month : settings_.months()) {
            for (std::size_t s = 0; s < stations_.count(); ++s) {
                const auto value = number(s, "SR_", month);
                const auto most = extraterrestrial(s, month);
                if (!value || !most || *value <= 0) continue;
                shares.push_back(*value / *most);
                const bool above = shares.back() > 1;
                if (!above && shares.back() >= kLeastShare) continue;
                single.push_back({Severity::warning, stations_.weatherTable(),
                                  "SR_" + GetMonthName(month), stations_.name(s),
                                  numberText(*value) + " MJ/m2/day is " +
                                      (above ? "above " : "below a fifth of ") +
                                      "the extraterrestrial radiation " + roundedText(*most)});
            }
        }
        const std::string unit = shares.empty() ? "" : likelyRadiationUnit(middleOf(shares));
        if (unit.empty()) {
            findings_.insert(findings_.end(), single.begin(), single.end());
        } else {
            add(Severity::warning, "SR_...", {},
                "the values are " + roundedText(middleOf(shares)) +
                    " times the extraterrestrial radiation where 0.3 to 0.8 is usual in "
                    "MJ/m2/day; they would be likely in " +
                    unit);
        }
    }

    void checkWind() {
        const auto values = numbers("WS_");
        if (values.empty()) return;
        add(Severity::note, "WS_...", {},
            "is taken as the wind at 2 m: multiply what was measured at z m by 4.87 / ln(67.8 z - "
            "5.42), which is 0.75 at 10 m");
        tellUnit("WS_...", middleOf(values), "m/s", likelyWindUnit(middleOf(values)));
    }

    void checkPrecipitation() {
        const auto values = numbers("P_");
        if (values.empty()) return;
        tellUnit("P_...", middleOf(values), "inches per month",
                 likelyPrecipitationUnit(middleOf(values)));
    }

    void tellUnit(const std::string& field, double middle, const std::string& unit,
                  const std::string& likely) {
        if (likely.empty()) return;
        add(Severity::warning, field, {},
            roundedText(middle) + " " + unit +
                " is the middle of the values, which is not likely; it would be in " + likely);
    }

    IPlatform& platform_;
    const RunSettings& settings_;
    const WeatherStations& stations_;
    std::vector<double> latitudes_;  // of the stations, degrees; empty where they are not known
    std::vector<Finding> findings_;
};

}  // namespace

std::vector<Finding> checkPhysics(IPlatform& platform, const RunSettings& settings,
                                  const WeatherStations& stations, const std::string& crs,
                                  const CheckScope& scope) {
    return PhysicsCheck(platform, settings, stations).run(crs, scope);
}

}  // namespace velmora
