// SPDX-License-Identifier: MIT
#pragma once

#include "shell/com_object.h"
#include "shell/interfaces.h"

namespace velmora {

class clsWaterUseEstimation : public ComObject<IExtension, IExtensionConfig> {
  public:
    std::string Name() override { return "Tarnwick"; }
    void Startup(void*) override {}
    void Shutdown() override {}
    std::string ProductName() override { return "Regional Evapotranspiration"; }
    std::string Description() override {
        return "This is a ArcGIS extension for estimating regional Irrigation water use.";
    }
    // The value as the host last put it; no command consults it.
    std::int32_t State() override { return state_; }
    void putState(std::int32_t state) override { state_ = state; }

  private:
    std::int32_t state_ = 0;
};

}  // namespace velmora
