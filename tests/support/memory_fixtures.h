// SPDX-License-Identifier: MIT
// The fixtures on the platform in memory.
#pragma once

#include "tests/support/fakes.h"
#include "tests/support/irrigation_domain.h"
#include "tests/support/worlds.h"

namespace velmora::test {

using MemoryRun = In<MemoryWorld, RunDomain>;
using MemoryCrops = In<MemoryWorld, CropDomain>;
using MemoryIrrigation = In<MemoryWorld, IrrigationDomain>;

}  // namespace velmora::test
