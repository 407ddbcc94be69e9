// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "gis/polygon_analysis.h"

namespace velmora::platform {

class ZonalOp : public IZonalOp {
  public:
    std::shared_ptr<ITable> ZonalStatisticsAsTable(const std::shared_ptr<IFeatureClass>& zones,
                                                   const std::string& zoneField,
                                                   const RasterPtr& values,
                                                   bool ignoreNoData) override;
};

}  // namespace velmora::platform
