// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "gis/features.h"
#include "gis/tables.h"

namespace velmora::platform {

class ConnectionFactory : public IConnectionFactory {
  public:
    explicit ConnectionFactory(IFeatureWorkspaceFactory& tables) : tables_(tables) {}
    void createDatabase(const std::string& connectionString) override;
    std::unique_ptr<IConnection> open(const std::string& connectionString) override;

  private:
    IFeatureWorkspaceFactory& tables_;
};

// The value of a key in "Key=Value;Key = Value", keys without regard to case, "" when absent.
std::string connectionPart(const std::string& connectionString, const std::string& key);

}  // namespace velmora::platform
