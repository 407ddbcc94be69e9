// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "gis/features.h"
#include "gis/projection.h"

namespace velmora::platform {

// Shapefiles and dBASE tables through OGR.
class FeatureWorkspaceFactory : public IFeatureWorkspaceFactory {
  public:
    explicit FeatureWorkspaceFactory(ISpatialReferenceFactory& spatialReferences);
    std::shared_ptr<IFeatureClass> openFeatureClass(const std::string& path) override;
    std::shared_ptr<IFeatureClass> openFeatureClass(const std::string& path,
                                                    const std::string& crs) override;
    std::shared_ptr<ITable> openTable(const std::string& path) override;
    std::unique_ptr<IEditSession> edit(std::shared_ptr<ITable> table) override;
    bool deleteFeatureClass(const std::string& path) override;
    void createFeatureClass(const std::string& path, bool polygons, const std::string& crs,
                            const std::vector<Field>& fields,
                            const std::vector<NewFeature>& features) override;
    void createTable(const std::string& path, const std::vector<Field>& fields,
                     const std::vector<std::vector<FieldValue>>& records) override;

  private:
    ISpatialReferenceFactory& spatialReferences_;
};

}  // namespace velmora::platform
