// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/disk_world.h"
#include "tests/support/fakes.h"
#include "tests/support/run_domain.h"

namespace velmora::test {

using RunFixture = In<DiskWorld, RunDomain>;

}  // namespace velmora::test
