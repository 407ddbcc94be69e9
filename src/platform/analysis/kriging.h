// SPDX-License-Identifier: MIT
// Ordinary kriging surfaces. The systems of a grid's neighbour sets depend on where the stations
// stand and on the model, so months that share both share the factors; the neighbour sets are
// shared by all months over the same stations.
#pragma once

#include <memory>
#include <vector>

#include "gis/rasters.h"
#include "platform/analysis/kriging_system.h"
#include "platform/analysis/neighbour_sets.h"

namespace velmora::platform {

class KrigingPlan {
  public:
    // Factorises the system of every neighbour set, once each. The model's sill is positive.
    KrigingPlan(std::shared_ptr<const NeighbourSets> sets, const SphericalModel& model);
    bool serves(const NeighbourSets& sets, const SphericalModel& model) const {
        return &sets == sets_.get() && model == model_;
    }
    bool singular() const { return singular_; }  // whether a system has no solution
    std::size_t bytes() const;

    // The surface of the stations' values, in the order of the stations.
    RasterPtr surface(const std::vector<double>& values) const;

  private:
    std::shared_ptr<const NeighbourSets> sets_;
    SphericalModel model_;
    Correlation correlation_;
    std::vector<KrigingSystem> systems_;
    bool singular_ = false;
};

}  // namespace velmora::platform
