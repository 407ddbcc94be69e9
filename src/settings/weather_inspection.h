// SPDX-License-Identifier: MIT
// Which weather parameters a weather table holds, told by the names of its fields.
//
// The first field identifies the station. Every other field holds one parameter for one period and
// is named by a prefix and the period, such as TM_Jan.
#pragma once

#include <string>
#include <vector>

#include "gis/tables.h"

namespace velmora {

// The parameters in the order in which the inspection looks for them.
enum class WeatherParameter { Tmax, Tmin, Tdew, Tmean, SR, WS, RHmax, RHmin, RHmean };
constexpr int kWeatherParameters = 9;

// The names of the table's fields in their stored order, through the dBASE data source.
std::vector<std::string> weatherFieldNames(IConnectionFactory& connections,
                                           const std::string& path);

// True when a field other than the first begins with the parameter's prefix. Two characters are
// compared, always: the three-letter prefixes of humidity are never found, and consumers count on
// that.
bool holdsParameter(const std::vector<std::string>& fieldNames, WeatherParameter parameter);

// "SELECT * FROM path" for the dBASE data source: the path goes without its last four characters.
std::string weatherQuery(const std::string& path);

constexpr const char* kDbaseConnection = "Provider=MSDASQL.1;Data Source=dBASE Files";

}  // namespace velmora
