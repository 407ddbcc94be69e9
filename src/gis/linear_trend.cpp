// SPDX-License-Identifier: MIT
#include "gis/linear_trend.h"

#include <string>

#include "gis/errors.h"

namespace velmora {

LinearTrend fitLinearTrend(std::span<const ElevationPair> pairs) {
    if (pairs.size() < 2) {
        throw PlatformError("a regression on elevation needs at least two stations, there are " +
                            std::to_string(pairs.size()));
    }
    const auto n = static_cast<double>(pairs.size());
    double sx = 0;
    double sy = 0;
    double sxy = 0;
    double sxx = 0;
    for (const auto& [x, y] : pairs) {
        sx += x;
        sy += y;
        sxy += x * y;
        sxx += x * x;
    }
    const double spread = n * sxx - sx * sx;
    constexpr double kRounding = 1e-12;
    if (spread <= kRounding * n * sxx) {
        throw PlatformError("all " + std::to_string(pairs.size()) +
                            " stations stand at one elevation, so there is no regression on "
                            "elevation");
    }
    const double b = (n * sxy - sx * sy) / spread;
    return {(sy - b * sx) / n, b};
}

}  // namespace velmora
