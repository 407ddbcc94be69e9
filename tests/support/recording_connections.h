// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "gis/tables.h"

namespace velmora::test {

// Connections of another, noting what is opened and run through them.
class RecordingConnections : public IConnectionFactory {
  public:
    explicit RecordingConnections(IConnectionFactory& real) : real_(real) {}
    void createDatabase(const std::string& connectionString) override {
        real_.createDatabase(connectionString);
    }
    std::unique_ptr<IConnection> open(const std::string& connectionString) override;
    void makeDatabase(const std::string& path,
                      const std::function<void(const std::string& unfinished)>& fill) override {
        real_.makeDatabase(path, fill);
    }
    std::string staleCopy(const std::string& path) override { return real_.staleCopy(path); }
    bool needsCopy(const std::string& path) override { return real_.needsCopy(path); }
    std::vector<std::string> opened;      // connection strings
    std::vector<std::string> statements;  // and queries

  private:
    IConnectionFactory& real_;
};

}  // namespace velmora::test
