// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "gis/features.h"
#include "gis/projection.h"
#include "tests/support/failure_point.h"
#include "tests/support/fake_tables.h"

namespace velmora::test {

// Layers and tables in memory: "NAME.shp" and "NAME.dbf" of a layer are one table. An open table
// shows what was stored when it was opened. Records are never deleted.
class FakeFeatures : public IFeatureWorkspaceFactory {
  public:
    FakeFeatures(FakeTables& tables, ISpatialReferenceFactory& systems)
        : tables_(tables), systems_(systems) {}
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

    FailurePoint opens{"Cannot open the table "};    // of layers and tables
    FailurePoint creates{"Cannot make the table "};  // of layers and tables
    FailurePoint saves{"Cannot store the table "};   // of edit sessions

  private:
    TableContent contentOfLayer(const std::string& path, const std::string& crs) const;
    void requireFolderOf(const std::string& path) const;

    FakeTables& tables_;
    ISpatialReferenceFactory& systems_;
};

}  // namespace velmora::test
