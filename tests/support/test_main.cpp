// SPDX-License-Identifier: MIT
// Takes the locale of the environment, as a desktop host does, and then runs the tests.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <iostream>
#include <locale>

#include "platform/files/posix_file.h"
#include "platform/platform.h"

int main(int argc, char** argv) {
    if (std::getenv("VELMORA_EXPECT_COMMA") != nullptr) {
        if (std::setlocale(LC_ALL, "") == nullptr || *std::localeconv()->decimal_point != ',') {
            std::cerr << "The locale with a decimal comma is not there\n";
            return 1;
        }
        std::locale::global(std::locale(""));
    }
    velmora::platform::keepLibrariesQuiet();
    velmora::platform::setSyncing(false);  // no test cuts the power
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
