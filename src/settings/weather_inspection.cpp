// SPDX-License-Identifier: MIT
#include "settings/weather_inspection.h"

#include <algorithm>
#include <array>

#include "gis/connection_text.h"

namespace velmora {

namespace {

constexpr std::array<std::string_view, kWeatherParameters> kPrefixes = {
    "TM", "TN", "TD", "TA", "SR", "WS", "RHM", "RHN", "RHA"};

}  // namespace

std::string weatherQuery(const std::string& path) {
    return "SELECT * FROM " + tableInQuery(path.substr(0, path.size() < 4 ? 0 : path.size() - 4));
}

std::vector<std::string> weatherFieldNames(IConnectionFactory& connections,
                                           const std::string& path) {
    const auto connection = connections.open(kDbaseConnection);
    const auto records = connection->open(weatherQuery(path));
    std::vector<std::string> names;
    for (int i = 0; i < records->fieldCount(); ++i) names.push_back(records->fieldName(i));
    return names;
}

bool holdsParameter(const std::vector<std::string>& fieldNames, WeatherParameter parameter) {
    const std::string_view prefix = kPrefixes[static_cast<std::size_t>(parameter)];
    return std::any_of(fieldNames.begin() + (fieldNames.empty() ? 0 : 1), fieldNames.end(),
                       [&](const std::string& name) { return name.substr(0, 2) == prefix; });
}

}  // namespace velmora
