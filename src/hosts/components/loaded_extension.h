// SPDX-License-Identifier: MIT
#pragma once

#include "hosts/components/component_loader.h"
#include "shell/interfaces.h"

namespace velmora {

// The extension as a host holds it: loaded from the library beside the program and started, and
// shut down at the end. Throws PlatformError when the library cannot be loaded.
class LoadedExtension {
  public:
    LoadedExtension()
        : loader_(extensionLibrary()),
          extension_(loader_.create<IExtension>("Tarnwick.clsWaterUseEstimation")) {
        extension_->Startup(nullptr);
    }
    ~LoadedExtension() { extension_->Shutdown(); }
    LoadedExtension(const LoadedExtension&) = delete;
    LoadedExtension& operator=(const LoadedExtension&) = delete;

    // A toolbar, menu or command by its ProgID.
    template <class Interface>
    ComPtr<Interface> create(const std::string& progId) const {
        return loader_.create<Interface>(progId);
    }

  private:
    ComponentLoader loader_;
    ComPtr<IExtension> extension_;
};

}  // namespace velmora
