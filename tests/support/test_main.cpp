// SPDX-License-Identifier: MIT
#include "tests/support/run_tests.h"

int main(int argc, char** argv) { return velmora::test::runTests(argc, argv); }
