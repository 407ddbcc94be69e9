// SPDX-License-Identifier: MIT
#pragma once

namespace velmora {

class IClock {
  public:
    virtual ~IClock() = default;
    virtual double seconds() const = 0;  // grows steadily; differences are durations
    virtual int currentYear() const = 0;
};

}  // namespace velmora
