// SPDX-License-Identifier: MIT
// The one record that carries everything a run needs. The order of the members is the order of the
// settings file. Choices are the texts that a user saw; run_choices.h says what they stand for.
#pragma once

#include <string>
#include <vector>

namespace velmora {

struct RunSettings {
    std::string DEM;                  // path of the elevation raster
    std::string WeatherStations;      // path of the station point shapefile
    std::string WeatherData;          // path of the dBASE weather table
    std::string KcTable;              // path of the crop coefficient table
    std::string LandCover;            // path of the land cover polygon shapefile
    std::string Zones;                // path of the zone polygon shapefile
    std::string ZoneField;            // the zones' key field
    std::string PrismGridFolder;      // where the reference precipitation grids lie
    std::string OutputWorkspace;      // folder of all output
    std::string ExtentProvider;       // path of the shapefile whose extent is the modelling domain
    double CellSize = 0;              // metres
    std::string RefETMethod;          // "1" to "6"
    std::string PrecipitationMethod;  // "EDK" or "PRISM_REF"
    std::string TimeStep;             // "Monthly" or "Daily"
    std::string Year;
    std::string BeginMonth;  // "Jan" to "Dec"
    std::string EndMonth;
    std::string BeginDay;  // "1" to "31"
    std::string EndDay;
    std::string DemUnit;            // "Meters" or "Feet"
    std::string SiteElevationUnit;  // "Meters" or "Feet"
    std::string TemperatureUnit;    // "Degree C" or "Degree F"
    bool ShowMonitor = false;
    bool HasTmax = false;
    bool HasTmin = false;
    bool HasTmean = false;
    bool HasTdew = false;
    bool HasRHmean = false;
    bool HasRHmax = false;
    bool HasRHmin = false;
    bool HasSR = false;
    bool HasWS = false;
    double Ks = 0;                  // of the radiation estimate (Tmax-Tmin)^0.5 x Ra x Ks
    double Ko = 0;                  // deg C, of the dew point estimate Tmin - Ko
    double EstimatedWindSpeed = 0;  // m/s at 2 m

    bool operator==(const RunSettings&) const = default;

    int methodNumber() const;       // the numeric value of RefETMethod, 0 for none
    std::string methodTag() const;  // "_" and the method, the end of the names of its grids
    int yearNumber() const;         // the number at the beginning of Year, 0 for none
    int beginMonthNumber() const;
    int endMonthNumber() const;
    // The month numbers of the period in order; an unknown begin month counts as before January, an
    // unknown end month leaves none.
    std::vector<int> months() const;
    // Methods 4 and 5 need temperatures alone; the others humidity, radiation and wind as well.
    bool needsFullWeather() const;
};

}  // namespace velmora
