// SPDX-License-Identifier: MIT
#include "tests/support/run_tests.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <iostream>
#include <locale>

namespace velmora::test {

int runTests(int argc, char** argv) {
    if (std::getenv("VELMORA_EXPECT_COMMA") != nullptr) {
        if (std::setlocale(LC_ALL, "") == nullptr || *std::localeconv()->decimal_point != ',') {
            std::cerr << "The locale with a decimal comma is not there\n";
            return 1;
        }
        std::locale::global(std::locale(""));
    }
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

}  // namespace velmora::test
