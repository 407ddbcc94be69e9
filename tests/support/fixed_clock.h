// SPDX-License-Identifier: MIT
#pragma once

#include "gis/clock.h"

namespace velmora::test {

// A clock that stands, or goes on by a step with each look.
class FixedClock : public IClock {
  public:
    double seconds() const override { return now += step; }
    int currentYear() const override { return 2031; }
    mutable double now = 0;
    double step = 0;  // that each look at the clock takes
};

}  // namespace velmora::test
