// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "gis/analysis.h"
#include "platform/analysis/environment.h"
#include "platform/analysis/idw.h"
#include "platform/analysis/kriging.h"

namespace velmora::platform {

// The interpolation methods, sharing plans and neighbour sets between the surfaces of one
// operation.
class InterpolationOp : public IInterpolationOp {
  public:
    IRasterAnalysisEnvironment& environment() override { return environment_; }
    RasterPtr IDW(const std::vector<Sample>& samples, double power, int nearest) override;
    RasterPtr Krige(const std::vector<Sample>& samples, SemivariogramType type,
                    int nearest) override;
    std::optional<Semivariogram> semivariogram(const std::vector<Sample>& samples) const override;

    // Kriging with a given model, whose sill is positive; no raster when a system has no solution.
    RasterPtr Krige(const std::vector<Sample>& samples, const SphericalModel& model, int nearest);

  private:
    std::shared_ptr<const NeighbourSets> neighbourSets(const std::vector<Point>& stations,
                                                       int nearest);

    AnalysisEnvironment environment_;
    std::vector<std::shared_ptr<const IdwPlan>> idwPlans_;
    std::vector<std::shared_ptr<const NeighbourSets>> neighbourSets_;
};

}  // namespace velmora::platform
