// SPDX-License-Identifier: MIT
#include "platform/files/posix_file.h"
#include "platform/platform.h"
#include "tests/support/run_tests.h"

int main(int argc, char** argv) {
    velmora::platform::keepLibrariesQuiet();
    velmora::platform::setSyncing(false);  // no test cuts the power
    return velmora::test::runTests(argc, argv);
}
