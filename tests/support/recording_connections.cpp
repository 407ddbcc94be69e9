// SPDX-License-Identifier: MIT
#include "tests/support/recording_connections.h"

#include <utility>

namespace velmora::test {

namespace {

class RecordingConnection : public IConnection {
  public:
    RecordingConnection(std::unique_ptr<IConnection> real, std::vector<std::string>& statements)
        : real_(std::move(real)), statements_(statements) {}
    std::unique_ptr<IRecordset> open(const std::string& query) override {
        statements_.push_back(query);
        return real_->open(query);
    }
    void execute(const std::string& statement) override {
        statements_.push_back(statement);
        real_->execute(statement);
    }
    void createTable(const std::string& name,
                     const std::vector<ColumnDefinition>& columns) override {
        real_->createTable(name, columns);
    }
    std::vector<std::string> tableNames() override { return real_->tableNames(); }
    std::unique_ptr<ITransaction> beginTransaction() override { return real_->beginTransaction(); }
    void append(const std::string& table, IRowSource& source) override {
        real_->append(table, source);
    }

  private:
    std::unique_ptr<IConnection> real_;
    std::vector<std::string>& statements_;
};

}  // namespace

std::unique_ptr<IConnection> RecordingConnections::open(const std::string& connectionString) {
    opened.push_back(connectionString);
    return std::make_unique<RecordingConnection>(real_.open(connectionString), statements);
}

}  // namespace velmora::test
