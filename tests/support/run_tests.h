// SPDX-License-Identifier: MIT
#pragma once

namespace velmora::test {

// Takes the locale of the environment, as a desktop host does, and then runs the tests. The
// program's exit status.
int runTests(int argc, char** argv);

}  // namespace velmora::test
