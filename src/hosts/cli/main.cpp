// SPDX-License-Identifier: MIT
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>

#include "hosts/cli/command_line.h"
#include "hosts/cli/console.h"
#include "platform/platform.h"

namespace {

// What a library throws where nothing can be caught any more, as PROJ does when its database cannot
// be read while it looks for a system. What is unfinished is removed by the next run.
[[noreturn]] void endWithReason() {
    try {
        if (!std::current_exception()) std::abort();
        throw;
    } catch (const std::exception& e) {
        velmora::cli::tell("velmora: ended early: {}\n", velmora::cli::oneLine(e.what()));
    } catch (...) {
        velmora::cli::tell("velmora: ended early\n");
    }
    std::_Exit(1);
}

// So that changes bear a name where the environment has none, as in a container.
void nameUser() {
    if (std::getenv("LOGNAME") || std::getenv("USER")) return;
    if (const passwd* user = getpwuid(geteuid())) setenv("LOGNAME", user->pw_name, 0);
}

}  // namespace

int main(int argc, char** argv) {
    std::set_terminate(endWithReason);
    velmora::cli::holdStandardFiles();
    nameUser();
    velmora::platform::keepLibrariesQuiet();
    velmora::platform::boundLibrariesMemory();
    return velmora::cli::closeOutput(velmora::cli::CommandLine().run(argc, argv));
}
