// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "gis/polygon_analysis.h"

namespace velmora::platform {

class ZonalOp : public IZonalOp {
  public:
    std::shared_ptr<ITable> ZonalStatisticsAsTable(const std::shared_ptr<IFeatureClass>& zones,
                                                   const std::string& zoneField,
                                                   const RasterPtr& values,
                                                   bool ignoreNoData) override;
    std::vector<std::int32_t> recordsOfCells(const IFeatureClass& polygons,
                                             const GridGeometry& geometry, int firstRow,
                                             int rows) override;
};

}  // namespace velmora::platform
