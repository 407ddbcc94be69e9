// SPDX-License-Identifier: MIT
#pragma once

#include "platform/platform.h"
#include "tests/support/fixed_clock.h"

namespace velmora::test {

// The real platform with a clock that stands, and parts that a test may replace.
class TestPlatform : public platform::Platform {
  public:
    FixedClock& clock() override { return clock_; }
    IFileSystem& files() override { return otherFiles ? *otherFiles : Platform::files(); }
    IConnectionFactory& connections() override {
        return otherConnections ? *otherConnections : Platform::connections();
    }
    IFeatureWorkspaceFactory& features() override {
        return otherFeatures ? *otherFeatures : Platform::features();
    }
    IFileSystem* otherFiles = nullptr;
    IFeatureWorkspaceFactory* otherFeatures = nullptr;
    IConnectionFactory* otherConnections = nullptr;

  private:
    FixedClock clock_;
};

}  // namespace velmora::test
