// SPDX-License-Identifier: MIT
// What stands behind the library's entry points.
#pragma once

#include "shell/com.h"

namespace velmora {

HResult getClassObject(const Guid& clsid, const Guid& interfaceId, void** object);
HResult canUnloadNow();

}  // namespace velmora
