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
    void makeDatabase(const std::string& path,
                      const std::function<void(const std::string& unfinished)>& fill) override;
    std::string staleCopy(const std::string& path) override;
    bool needsCopy(const std::string& path) override;

  private:
    IFeatureWorkspaceFactory& tables_;
};

}  // namespace velmora::platform
