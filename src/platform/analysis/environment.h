// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

#include "gis/analysis.h"
#include "gis/projection.h"

namespace velmora::platform {

class AnalysisEnvironment : public IRasterAnalysisEnvironment {
  public:
    void SetCellSize(EnvironmentSetting setting, double cellSize) override;
    void SetExtent(EnvironmentSetting setting, const Envelope& extent,
                   const std::string& crs) override;
    GridGeometry geometry() const override;

    // The cells of a result of these inputs, under whichever settings. Throws PlatformError, which
    // names the inputs and their extents, when there is no place that all of them cover, or
    // their units when none is in metres.
    struct Input {
        std::string name;
        GridGeometry geometry;
    };
    GridGeometry geometryOf(std::span<const Input> inputs,
                            ISpatialReferenceFactory& spatialReferences) const;

  private:
    EnvironmentSetting cellSizeSetting_ = EnvironmentSetting::explicitValue;
    EnvironmentSetting extentSetting_ = EnvironmentSetting::explicitValue;
    double cellSize_ = 0;
    Envelope extent_;
    std::string crs_;
};

}  // namespace velmora::platform
