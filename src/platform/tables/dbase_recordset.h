// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "gis/features.h"
#include "gis/tables.h"

namespace velmora::platform {

// The dBASE data source: queries over one table, named by its path without its extension (in
// brackets, or as it stands when it is followed by nothing but WHERE). Texts compare without regard
// to ASCII case. Rows of "SELECT * FROM ..." can be changed and added to, each update stored whole
// or not at all.
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
