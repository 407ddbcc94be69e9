// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora {

// Where a model step tells what it is doing.
class IProgressMonitor {
  public:
    virtual ~IProgressMonitor() = default;
    virtual void setMessage(const std::string& text) = 0;
    virtual void setStatus(const std::string& text) = 0;
};

}  // namespace velmora
