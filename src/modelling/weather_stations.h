// SPDX-License-Identifier: MIT
// The weather stations of a run, joined to their weather table, and the parts out of which every
// surface over them is made: the stations that take part in a month, the straight line of their
// values over elevation, what the line leaves, and the line put back over the DEM.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "gis/application.h"
#include "gis/errors.h"
#include "gis/linear_trend.h"
#include "gis/working_layer.h"
#include "settings/run_settings.h"

namespace velmora {

// A station's part in a regression.
struct StationValue {
    Point at;
    double elevation = 0;  // metres
    double value = 0;
};

// The pairs of the stations by rising x, then y (elevation and value where several stand at one
// place), so that no sum over them depends on the order of the records.
std::vector<ElevationPair> pairsByPosition(std::vector<StationValue> stations);

class WeatherStations {
  public:
    // Opens the station shapefile and the weather table and joins them by the stations' names.
    // What is to be interpolated goes through the stations' numeric field `workingField`.
    // Positions are wanted in `crs` (WKT). Throws PlatformError naming the file, field or keys
    // when that fails.
    WeatherStations(IPlatform& platform, const RunSettings& settings,
                    const std::string& workingField, const std::string& crs);

    // Fields as the join names them: "weather.P_Jan", "stations.elevation".
    std::string weatherField(const std::string& prefix, int month) const;
    std::string layerField(const std::string& field) const;
    std::string workingField() const { return layerField(workingField_); }
    bool hasField(const std::string& qualified) const { return joined_->hasField(qualified); }
    // Throws PlatformError naming table and field unless there is such a field.
    void requireWeatherField(const std::string& qualified) const;
    void requireElevations() const;

    const std::string& weatherTable() const { return settings_.WeatherData; }  // its path
    std::size_t count() const { return positions_.size(); }
    std::string name(std::size_t station) const;
    const std::vector<Point>& positions() const { return positions_; }
    // A number of the station, nothing for null.
    std::optional<double> number(std::size_t station, const std::string& qualified) const;
    // Metres, whatever the unit of the settings.
    std::optional<double> elevation(std::size_t station) const;

    // The stations for which the clause holds, in record order.
    std::vector<std::size_t> selected(const std::string& whereClause) const;
    // How many stations have a number in the field, and how many of them hold 0.
    struct Zeros {
        std::size_t stations = 0;
        std::size_t zero = 0;
        bool all() const { return stations > 0 && zero == stations; }
    };
    Zeros zeros(const std::string& qualified) const;
    // "; 15 stations hold 0", "" when none does.
    std::string zerosText(const std::string& qualified) const;

    // The elevations (metres) and values of stations that have both.
    std::vector<ElevationPair> pairs(const std::string& qualified,
                                     const std::vector<std::size_t>& stations) const;
    // Fits value = a + b * elevation over them. Throws PlatformError for fewer than two stations,
    // or when all stand at one elevation; the text goes on after a count of stations.
    LinearTrend trendOf(const std::string& qualified,
                        const std::vector<std::size_t>& stations) const;
    // What the line leaves of each station's value, by the field calculator.
    std::vector<std::optional<double>> residuals(const std::string& qualified,
                                                 const std::vector<std::size_t>& stations,
                                                 const LinearTrend& trend) const;
    // Fits the line and puts what it leaves of each station into the working field.
    LinearTrend detrend(const std::string& qualified, const std::vector<std::size_t>& stations);

    // Puts the expression's value of each station into the working field, null where an operand is
    // null or the value has no number.
    void calculate(const std::vector<std::size_t>& stations, const std::string& expression);
    void setWorkingValue(std::size_t station, double value) { layer_->setValue(station, value); }

    // The stations' values of a field; those without one are left out.
    std::vector<Sample> samples(const std::vector<std::size_t>& stations,
                                const std::string& qualified) const;

    // Stores the working field in the stations' attribute table. Where that fails the table stays
    // as it was and a message says why; that stations without such a table keep the field in memory
    // is a notice. What was made from the values in memory stands either way.
    void storeWorkingField(IApplication& application);

  private:
    // Does what reads numbers of the stations; a failure in a record tells its station too.
    template <class Body>
    auto namingStation(Body body) const;
    std::string stationAt(const ErrorPlace& place) const;
    void setWorkingValues(const std::vector<std::size_t>& stations,
                          const std::vector<std::optional<double>>& values);

    IPlatform& platform_;
    const RunSettings& settings_;
    std::string workingField_;
    std::shared_ptr<WorkingLayer> layer_;
    std::shared_ptr<ITable> table_;  // the weather
    std::unique_ptr<IJoinedLayer> joined_;
    std::vector<Point> positions_;
};

}  // namespace velmora
