// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "gis/polygon_analysis.h"
#include "platform/analysis/environment.h"
#include "platform/analysis/polygon_cells.h"

namespace velmora::platform {

// Polygons to rasters. Which polygon a cell belongs to is found once per set of polygons: months
// that keep the same polygons share it.
class ConversionOp : public IConversionOp {
  public:
    IRasterAnalysisEnvironment& environment() override { return environment_; }
    std::unique_ptr<IRasterDataset> ToRasterDataset(const FeatureClassDescriptor& descriptor,
                                                    const std::string& format,
                                                    IRasterWorkspace& workspace,
                                                    const std::string& name) override;
    // How often the polygons' shapes have been read.
    int passes() const { return passes_; }

  private:
    struct Assignment {
        std::string path;
        std::vector<bool> chosen;
        std::shared_ptr<const PolygonCells> cells;
    };
    std::shared_ptr<const PolygonCells> assignment(const std::string& path,
                                                   const std::vector<bool>& chosen);

    AnalysisEnvironment environment_;
    std::vector<Assignment> assignments_;
    int passes_ = 0;
};

}  // namespace velmora::platform
