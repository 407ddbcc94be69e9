// SPDX-License-Identifier: MIT
#include "hosts/cli/command_line.h"

int main(int argc, char** argv) { return velmora::cli::CommandLine().run(argc, argv); }
