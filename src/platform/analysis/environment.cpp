// SPDX-License-Identifier: MIT
#include "platform/analysis/environment.h"

namespace velmora::platform {

void AnalysisEnvironment::SetCellSize(EnvironmentSetting, double cellSize) { cellSize_ = cellSize; }

void AnalysisEnvironment::SetExtent(EnvironmentSetting, const Envelope& extent,
                                    const std::string& crs) {
    extent_ = extent;
    crs_ = crs;
}

GridGeometry AnalysisEnvironment::geometry() const {
    return GridGeometry::covering(extent_, cellSize_, crs_);
}

}  // namespace velmora::platform
