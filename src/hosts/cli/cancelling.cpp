// SPDX-License-Identifier: MIT
#include "hosts/cli/cancelling.h"

#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <string_view>

#include "hosts/cli/console.h"
#include "platform/platform.h"

namespace velmora::cli {

namespace {

std::atomic<int> cancelledBy = 0;  // the signal

// Only what a handler of signals may do. The default action, which ends the program, is back when
// the same signal comes again.
extern "C" void cancelWork(int signal) {
    const int before = errno;
    cancelledBy = signal;
    feedback().cancel();
    constexpr std::string_view line = "\nvelmora: stopping (once more ends it at once)\n";
    constexpr std::string_view json =
        "{\"kind\":\"text\",\"text\":\"stopping (once more ends it at once)\"}\n";
    const std::string_view told = tellsAsJson() ? json : line;
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, told.data(), told.size());
    errno = before;
}

}  // namespace

Feedback& feedback() {
    static Feedback& feedback = *new Feedback;  // a signal may come after the end of main
    return feedback;
}

// A signal that the caller has had ignored, as shells do for what runs in the background, stays so.
void cancelOnSignals() {
    platform::watchLoops(&feedback());
    struct sigaction action = {};
    action.sa_handler = cancelWork;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGINT, SIGTERM}) {
        struct sigaction before = {};
        ::sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) ::sigaction(signal, &action, nullptr);
    }
}

void waitForInput() {
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    do {
        throwIfCancelled(feedback());
    } while (::poll(&input, 1, -1) < 0 && errno == EINTR);
}

int cancelledStatus() { return 128 + cancelledBy; }

}  // namespace velmora::cli
