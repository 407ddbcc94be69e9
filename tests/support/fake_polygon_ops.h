// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "gis/polygon_analysis.h"
#include "tests/support/fake_environment.h"

namespace velmora::test {

// Polygons of one ring each, looked up cell by cell; layer and grid share a coordinate system.
class FakeConversion : public IConversionOp {
  public:
    FakeEnvironment& environment() override { return environment_; }
    std::unique_ptr<IRasterDataset> ToRasterDataset(const FeatureClassDescriptor& descriptor,
                                                    const std::string& format,
                                                    IRasterWorkspace& workspace,
                                                    const std::string& name) override;

  private:
    FakeEnvironment environment_;
};

class FakeZonal : public IZonalOp {
  public:
    std::shared_ptr<ITable> ZonalStatisticsAsTable(const std::shared_ptr<IFeatureClass>& zones,
                                                   const std::string& zoneField,
                                                   const RasterPtr& values,
                                                   bool ignoreNoData) override;
    std::vector<std::int32_t> recordsOfCells(const IFeatureClass& polygons,
                                             const GridGeometry& geometry, int firstRow,
                                             int rows) override;
};

}  // namespace velmora::test
