// SPDX-License-Identifier: MIT
#include "hosts/cli/command_line.h"
#include "platform/platform.h"

int main(int argc, char** argv) {
    velmora::platform::keepLibrariesQuiet();
    velmora::platform::boundLibrariesMemory();
    return velmora::cli::CommandLine().run(argc, argv);
}
