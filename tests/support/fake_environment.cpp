// SPDX-License-Identifier: MIT
#include "tests/support/fake_environment.h"

#include <algorithm>
#include <cmath>

#include "gis/errors.h"

namespace velmora::test {

void FakeEnvironment::SetCellSize(EnvironmentSetting setting, double cellSize) {
    ofInputs_ = setting == EnvironmentSetting::minimumOfInputs;
    cellSize_ = cellSize;
}

void FakeEnvironment::SetExtent(EnvironmentSetting setting, const Envelope& extent,
                                const std::string& crs) {
    ofInputs_ = setting == EnvironmentSetting::minimumOfInputs;
    extent_ = extent;
    crs_ = crs;
}

GridGeometry FakeEnvironment::geometry() const {
    return GridGeometry::covering(extent_, cellSize_, crs_);
}

GridGeometry FakeEnvironment::geometryOf(const std::vector<GridGeometry>& inputs) const {
    if (!ofInputs_) return geometry();
    if (inputs.empty()) throw PlatformError("The expression names no raster to take cells from");
    GridGeometry result = *std::ranges::min_element(inputs, {}, &GridGeometry::cellSize);
    Envelope common = result.extent();
    for (const GridGeometry& input : inputs) {
        const Envelope e = input.extent();
        common = {std::max(common.xMin, e.xMin), std::max(common.yMin, e.yMin),
                  std::min(common.xMax, e.xMax), std::min(common.yMax, e.yMax)};
    }
    const auto cells = [&](double length) {
        return static_cast<int>(std::lround(length / result.cellSize));
    };
    const int left = cells(common.xMin - result.xMin);
    const int top = cells(result.yMax - common.yMax);
    result.columns = cells(common.xMax - result.xMin) - left;
    result.rows = cells(result.yMax - common.yMin) - top;
    result.xMin += left * result.cellSize;
    result.yMax -= top * result.cellSize;
    if (result.columns <= 0 || result.rows <= 0) {
        throw PlatformError("There is no place that all inputs cover");
    }
    return result;
}

}  // namespace velmora::test
