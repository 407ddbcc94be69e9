// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/crop_domain.h"
#include "tests/support/disk_world.h"
#include "tests/support/fakes.h"
#include "tests/support/run_fixture.h"

namespace velmora::test {

using CropFixture = In<DiskWorld, CropDomain>;

}  // namespace velmora::test
