// SPDX-License-Identifier: MIT
// How hosts make the extension's objects: by ProgID, through the class registry and the library's
// entry points.
#pragma once

#include <string>

#include "shell/com.h"

namespace velmora {

class ComponentLoader {
  public:
    // `library` is the host's own copy of libVelmora.so; it is registered when the registry does
    // not name it. A registry that cannot be written does not stop the host. Throws PlatformError
    // when the library cannot be loaded.
    explicit ComponentLoader(const std::string& library);

    // A new object of a registered class. Throws PlatformError for an unknown ProgID or an
    // interface that the object lacks.
    template <class Interface>
    ComPtr<Interface> create(const std::string& progId) const {
        ComPtr<Interface> object;
        createObject(progId, Interface::iid, object.receive());
        return object;
    }

  private:
    void createObject(const std::string& progId, const Guid& interfaceId, void** object) const;

    std::string library_;
};

// The library that belongs to this host, a program or a plugin: beside it in the build or in the
// installation, or the file that the environment variable VELMORA_LIBRARY names.
std::string extensionLibrary();

}  // namespace velmora
