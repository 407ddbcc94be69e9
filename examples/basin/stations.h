// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace velmora::examples {

// The long-term monthly means of a weather station, January to December; empty where not known.
struct StationNormals {
    std::string name;
    double elevation;        // m
    std::vector<double> TM;  // mean maximum temperature, deg C
    std::vector<double> TN;  // mean minimum temperature, deg C
    std::vector<double> TD;  // mean dew point temperature, deg C
    std::vector<double> SR;  // solar radiation, MJ m-2 d-1
    std::vector<double> WS;  // wind speed, m s-1
    std::vector<double> P;   // precipitation, inches per month
};

// Real stations by rising elevation.
const std::vector<StationNormals>& stationNormals();

}  // namespace velmora::examples
