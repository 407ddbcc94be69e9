// SPDX-License-Identifier: MIT
// The one family of failures that platform operations report. what() is the error description that
// a step shows to the user behind its fixed prefix: it names the file, field, station or cell.
#pragma once

#include <stdexcept>
#include <string>

namespace velmora {

class PlatformError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
    PlatformError(const PlatformError&) = default;
    PlatformError& operator=(const PlatformError&) = default;
    ~PlatformError() override;
};

}  // namespace velmora
