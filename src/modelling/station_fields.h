// SPDX-License-Identifier: MIT
// The fields by which stations and their weather are known.
#pragma once

namespace velmora {

// Of the station shapefile: the station's name, and its elevation in the unit of the settings.
constexpr const char* kStationNameField = "staname";
constexpr const char* kElevationField = "ELEVATION";
// Working fields of the station shapefile, numeric: what the line over elevation leaves of a
// temperature, and the precipitation that is interpolated. Runs overwrite them.
constexpr const char* kTemperatureField = "TempTTT";
constexpr const char* kPrecipitationField = "RefPPT";
// Of the weather table: the name of the station that a record belongs to.
constexpr const char* kWeatherStationField = "STN";

}  // namespace velmora
