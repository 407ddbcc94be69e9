// SPDX-License-Identifier: MIT
#include "gis/errors.h"

namespace velmora {

PlatformError::~PlatformError() = default;

}  // namespace velmora
