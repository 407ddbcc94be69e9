// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora {

// Message boxes. The desktop shows them modally; the headless host prints them.
class IPrompts {
  public:
    virtual ~IPrompts() = default;
    virtual void message(const std::string& text, const std::string& title) = 0;  // OK only
    void message(const std::string& text) { message(text, {}); }
    virtual bool confirm(const std::string& question, const std::string& title) = 0;  // Yes, No
};

}  // namespace velmora
