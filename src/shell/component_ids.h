// SPDX-License-Identifier: MIT
// The names and identifiers of the classes that the library serves. Whoever registers them or looks
// one up needs no class behind them.
#pragma once

#include <span>

#include "shell/com.h"

namespace velmora {

struct ComponentId {
    const char* progId;  // "Tarnwick." and the class name
    Guid clsid;
};

std::span<const ComponentId> componentIds();

}  // namespace velmora
