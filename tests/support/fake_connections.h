// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "gis/tables.h"
#include "tests/support/failure_point.h"
#include "tests/support/fake_tables.h"

namespace velmora::test {

// Connections to the tables of a FakeTables and to databases that take whole tables. It answers
// "SELECT columns FROM table" alone, writes down every other statement and query and refuses them;
// a recordset shows the rows and takes no change. Databases have no transactions.
class FakeConnections : public IConnectionFactory {
  public:
    explicit FakeConnections(FakeTables& tables, MemoryFiles& files)
        : tables_(tables), files_(files) {}
    void createDatabase(const std::string& connectionString) override;
    std::unique_ptr<IConnection> open(const std::string& connectionString) override;
    void makeDatabase(const std::string& path,
                      const std::function<void(const std::string& unfinished)>& fill) override;
    std::string staleCopy(const std::string&) override { return {}; }
    bool needsCopy(const std::string&) override { return false; }

    // The rows of each table of a database, by the table's name.
    std::map<std::string, std::size_t> rowsOf(const std::string& database) const;

    std::vector<std::string> opened;      // connection strings
    std::vector<std::string> statements;  // and queries
    FailurePoint opens{"Cannot open the connection "};
    FailurePoint queries{"Cannot run the query "};  // and statements
    FailurePoint writes{"Cannot write into the database "};

  private:
    friend class FakeConnection;
    using Tables = std::map<std::string, std::size_t>;

    FakeTables& tables_;
    MemoryFiles& files_;
    std::map<std::string, Tables> databases_;  // by the content of their files
};

}  // namespace velmora::test
