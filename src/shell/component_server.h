// SPDX-License-Identifier: MIT
// The classes that the library serves, and what stands behind its four entry points.
#pragma once

#include <span>
#include <string>

#include "shell/com.h"

namespace velmora {

struct ComponentClass {
    std::string progId;  // "Tarnwick." and the class name
    Guid clsid;
    IUnknown* (*create)();  // a new object with one reference
};

std::span<const ComponentClass> componentClasses();

HResult getClassObject(const Guid& clsid, const Guid& interfaceId, void** object);
HResult canUnloadNow();

}  // namespace velmora
