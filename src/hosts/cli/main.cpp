// SPDX-License-Identifier: MIT
#include "hosts/cli/command_line.h"
#include "hosts/cli/console.h"
#include "platform/platform.h"

int main(int argc, char** argv) {
    velmora::cli::holdStandardFiles();
    velmora::platform::keepLibrariesQuiet();
    velmora::platform::boundLibrariesMemory();
    return velmora::cli::closeOutput(velmora::cli::CommandLine().run(argc, argv));
}
