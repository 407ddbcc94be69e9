// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "gis/analysis.h"

namespace velmora::platform {

class AnalysisEnvironment : public IRasterAnalysisEnvironment {
  public:
    void SetCellSize(EnvironmentSetting setting, double cellSize) override;
    void SetExtent(EnvironmentSetting setting, const Envelope& extent,
                   const std::string& crs) override;
    GridGeometry geometry() const override;

  private:
    double cellSize_ = 0;
    Envelope extent_;
    std::string crs_;
};

}  // namespace velmora::platform
