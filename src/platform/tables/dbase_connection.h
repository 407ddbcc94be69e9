// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "gis/features.h"
#include "gis/tables.h"

namespace velmora::platform {

// The dBASE data source: queries over one table, named by its path without its extension (in
// brackets, a "]" doubled, or as it stands when it is followed by nothing but WHERE). Texts compare
// exactly, as joins do; names of fields without regard to ASCII case. Rows of "SELECT * FROM ..."
// can be changed and added to, each update stored whole or not at all; in a transaction all changes
// are stored at its end, and no row can be added.
class DbaseConnection : public IConnection {
  public:
    // Tables that are named without a folder lie in `folder`.
    explicit DbaseConnection(IFeatureWorkspaceFactory& tables, std::string folder = {});
    std::unique_ptr<IRecordset> open(const std::string& query) override;
    void execute(const std::string& statement) override;
    void createTable(const std::string& name,
                     const std::vector<ColumnDefinition>& columns) override;
    std::vector<std::string> tableNames() override;
    std::unique_ptr<ITransaction> beginTransaction() override;
    void append(const std::string& table, IRowSource& source) override;

    // The changes of tables by path, held back in a transaction.
    struct Edits {
        IFeatureWorkspaceFactory& tables;
        bool held = false;
        std::map<std::string, std::unique_ptr<IEditSession>> sessions;
    };

  private:
    std::string folder_;
    std::shared_ptr<Edits> edits_;
};

}  // namespace velmora::platform
