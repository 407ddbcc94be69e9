// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/temp_folder.h"
#include "tests/support/test_platform.h"
#include "tests/support/worlds.h"

namespace velmora::test {

// The real platform, in a folder of the disk that goes when the test ends.
struct DiskWorld {
    TempFolder folder;
    TestPlatform platform;
};

}  // namespace velmora::test
