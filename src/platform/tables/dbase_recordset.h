// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "gis/features.h"
#include "gis/tables.h"

namespace velmora::platform {

// The dBASE data source: "SELECT * FROM path-of-the-table-without-its-extension", read only.
class DbaseConnection : public IConnection {
  public:
    explicit DbaseConnection(IFeatureWorkspaceFactory& tables) : tables_(tables) {}
    std::unique_ptr<IRecordset> open(const std::string& query) override;
    void execute(const std::string& statement) override;
    void createTable(const std::string& name,
                     const std::vector<ColumnDefinition>& columns) override;
    void append(const std::string& table, const IColumnSource& source) override;

  private:
    IFeatureWorkspaceFactory& tables_;
};

}  // namespace velmora::platform
