// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

#include "gis/features.h"
#include "gis/tables.h"

namespace velmora::platform {

// A database file. Names ending in ".mdb" are SQLite files too: the name is the field's, the engine
// is ours. A genuine Access file is imported once, and its SQLite copy opened in its place.
class SqliteConnection : public IConnection {
  public:
    // `tables` makes the dBASE tables into which statements export. Throws PlatformError when the
    // file is missing, no database, or an Access file that cannot be imported.
    SqliteConnection(const std::string& path, IFeatureWorkspaceFactory& tables);
    static void create(const std::string& path);

    std::unique_ptr<IRecordset> open(const std::string& query) override;
    // Text columns of a table that a statement creates compare without regard to case. Beside SQL,
    // "SELECT * INTO [DBASE 5.0;DATABASE=folder].[name] FROM table" makes a dBASE
    // table in place of an older one.
    void execute(const std::string& statement) override;
    void createTable(const std::string& name,
                     const std::vector<ColumnDefinition>& columns) override;
    std::vector<std::string> tableNames() override;
    std::unique_ptr<ITransaction> beginTransaction() override;
    void append(const std::string& table, IRowSource& source) override;

    struct Closer {
        void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    };
    using Handle = std::shared_ptr<sqlite3>;

  private:
    void exportToDbase(const std::string& table, const std::string& path);

    std::string path_;
    IFeatureWorkspaceFactory& tables_;
    Handle database_;
};

}  // namespace velmora::platform
