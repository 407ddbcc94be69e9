// SPDX-License-Identifier: MIT
// An Access file of any content is copied into a database, or refused. The import reads it in a
// process of its own, because libmdb falls over some damaged files: an input is first tried in a
// child, and what ends inside libmdb or its glib is refused there, as the import does.
#include <dlfcn.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <ucontext.h>
#include <unistd.h>

#include <csignal>
#include <memory>
#include <string_view>

#include "platform/tables/access_reader.h"
#include "tests/fuzz/harness.h"

using namespace velmora;

namespace {

constexpr int kRefused = 77;

void copy(const std::string& path) {
    sqlite3* opened = nullptr;
    sqlite3_open(":memory:", &opened);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database(opened, sqlite3_close_v2);
    fuzz::tried([&] { platform::copyAccessTables(path, database.get()); });
}

// Ends the child: with kRefused where the signal came from within the library that reads the file.
void endChild(int, siginfo_t*, void* context) {
    Dl_info at{};
#if defined(__x86_64__)
    const auto place = static_cast<ucontext_t*>(context)->uc_mcontext.gregs[REG_RIP];
    dladdr(reinterpret_cast<void*>(place), &at);
#endif
    const std::string_view library = at.dli_fname ? at.dli_fname : "";
    const bool theirs =
        library.find("libmdb") != library.npos || library.find("libglib") != library.npos;
    _exit(theirs ? kRefused : 1);
}

bool survives(const std::string& path) {
    const pid_t child = fork();
    if (child == 0) {
        struct sigaction action {};
        action.sa_sigaction = endChild;
        action.sa_flags = SA_SIGINFO;
        for (const int signal : {SIGSEGV, SIGBUS, SIGFPE}) sigaction(signal, &action, nullptr);
        copy(path);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    const bool ended = child > 0 && WIFEXITED(status);
    fuzz::require(ended && (WEXITSTATUS(status) == 0 || WEXITSTATUS(status) == kRefused));
    return WEXITSTATUS(status) == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = fuzz::memoryFolder().write("f.mdb", fuzz::text(data, size));
    if (survives(path)) copy(path);
    return 0;
}
