// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "gis/analysis.h"

namespace velmora::test {

// The environment of an operation over inputs of one coordinate system, in metres. Of the inputs it
// takes the smallest cells and what all cover, on the lattice of the first of those.
class FakeEnvironment : public IRasterAnalysisEnvironment {
  public:
    void SetCellSize(EnvironmentSetting setting, double cellSize) override;
    void SetExtent(EnvironmentSetting setting, const Envelope& extent,
                   const std::string& crs) override;
    GridGeometry geometry() const override;
    // The cells of a result of these inputs. Throws PlatformError when they have none in common.
    GridGeometry geometryOf(const std::vector<GridGeometry>& inputs) const;

  private:
    bool ofInputs_ = false;
    double cellSize_ = 0;
    Envelope extent_;
    std::string crs_;
};

}  // namespace velmora::test
