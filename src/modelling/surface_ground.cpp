// SPDX-License-Identifier: MIT
#include "modelling/surface_ground.h"

#include <algorithm>

#include "gis/trend_test.h"

namespace velmora {

bool SurfaceGround::slopeIsChance() const {
    return slopeProbability && *slopeProbability > kSignificance;
}

SurfaceGround groundOf(const StationSurface& surface) {
    const WeatherStations& stations = surface.stations();
    SurfaceGround ground;
    for (const std::size_t station : surface.valid()) {
        ground.stations.push_back(stations.positions()[station]);
        const auto value = stations.number(station, surface.valueField());
        if (!value) continue;
        if (ground.stations.size() == 1) ground.values = {*value, *value};
        ground.values = {std::min(ground.values.low, *value), std::max(ground.values.high, *value)};
    }
    const auto trend = surface.trend();
    if (!trend) return ground;
    const auto pairs = stations.pairs(surface.field(), surface.valid());
    for (const ElevationPair& pair : pairs) {
        if (!ground.elevation) ground.elevation = Range{pair.elevation, pair.elevation};
        ground.elevation->low = std::min(ground.elevation->low, pair.elevation);
        ground.elevation->high = std::max(ground.elevation->high, pair.elevation);
    }
    ground.slopeProbability = slopeProbability(pairs, *trend);
    return ground;
}

}  // namespace velmora
