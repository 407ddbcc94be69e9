// SPDX-License-Identifier: MIT
#include "tests/support/fake_interpolation.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "gis/errors.h"
#include "gis/memory_raster.h"

namespace velmora::test {

namespace {

// The weighted mean of the samples nearest to a point.
double weighted(const std::vector<Sample>& samples, Point at, double power, int nearest) {
    std::vector<std::pair<double, double>> byDistance;  // distance and value
    for (const Sample& s : samples) {
        byDistance.emplace_back(std::hypot(s.at.x - at.x, s.at.y - at.y), s.value);
    }
    std::ranges::sort(byDistance);
    if (byDistance.front().first == 0) return byDistance.front().second;
    byDistance.resize(std::min(byDistance.size(), static_cast<std::size_t>(nearest)));
    double sum = 0;
    double weights = 0;
    for (const auto& [distance, value] : byDistance) {
        const double weight = std::pow(distance, -power);
        sum += weight * value;
        weights += weight;
    }
    return sum / weights;
}

}  // namespace

RasterPtr FakeInterpolation::IDW(const std::vector<Sample>& samples, double power, int nearest) {
    if (samples.empty()) throw PlatformError("There is no station to interpolate between");
    Grid grid(environment_.geometry());
    for (int r = 0; r < grid.geometry.rows; ++r) {
        for (int c = 0; c < grid.geometry.columns; ++c) {
            const Point centre{grid.geometry.columnCentre(c), grid.geometry.rowCentre(r)};
            grid.at(c, r) = static_cast<float>(weighted(samples, centre, power, nearest));
        }
    }
    return std::make_shared<MemoryRaster>(std::move(grid));
}

}  // namespace velmora::test
