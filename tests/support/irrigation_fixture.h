// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/crop_fixture.h"
#include "tests/support/disk_world.h"
#include "tests/support/fakes.h"
#include "tests/support/irrigation_domain.h"

namespace velmora::test {

using IrrigationFixture = In<DiskWorld, IrrigationDomain>;

}  // namespace velmora::test
