// SPDX-License-Identifier: MIT
#include "gis/linear_trend.h"

#include <algorithm>

#include "gis/errors.h"

namespace velmora {

namespace {
constexpr double kRounding = 1e-12;
}

LinearTrend fitLinearTrend(std::span<const ElevationPair> pairs) {
    if (pairs.size() < 2) {
        throw PlatformError("a regression on elevation needs at least two");
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
    if (spread <= kRounding * n * sxx) {
        throw PlatformError(
            "all of them stand at one elevation, so there is no regression on elevation");
    }
    const double b = (n * sxy - sx * sy) / spread;
    return {(sy - b * sx) / n, b};
}

std::optional<double> rSquared(std::span<const ElevationPair> pairs, const LinearTrend& trend) {
    double mean = 0;
    for (const auto& pair : pairs) mean += pair.value / static_cast<double>(pairs.size());
    double total = 0;
    double left = 0;
    double squares = 0;
    for (const auto& [elevation, value] : pairs) {
        const double off = value - trend.a - trend.b * elevation;
        total += (value - mean) * (value - mean);
        left += off * off;
        squares += value * value;
    }
    if (total <= kRounding * kRounding * squares) return std::nullopt;
    return std::max(0.0, 1 - left / total);
}

}  // namespace velmora
