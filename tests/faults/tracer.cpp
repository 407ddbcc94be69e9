// SPDX-License-Identifier: MIT
#include "tests/faults/tracer.h"

#include <fcntl.h>
#include <linux/seccomp.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>

#include "tests/faults/registers.h"
#include "tests/faults/tracee.h"

namespace velmora::faults {

namespace {

constexpr int kCallExit = SIGTRAP | 0x80;
constexpr long kOptions = PTRACE_O_TRACESECCOMP | PTRACE_O_EXITKILL | PTRACE_O_TRACEEXEC |
                          PTRACE_O_TRACECLONE | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK |
                          PTRACE_O_TRACESYSGOOD;

// Lets a blocked wait return when a program takes too long.
class Alarm {
  public:
    explicit Alarm(int seconds) {
        struct sigaction action {};
        action.sa_handler = [](int) {};
        ::sigaction(SIGALRM, &action, &before_);
        set(seconds);
    }
    ~Alarm() {
        set(0);
        ::sigaction(SIGALRM, &before_, nullptr);
    }
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;

  private:
    // It rings again each second, in case that it rang between two waits.
    static void set(int seconds) {
        const itimerval when{{seconds > 0 ? 1 : 0, 0}, {seconds, 0}};
        ::setitimer(ITIMER_REAL, &when, nullptr);
    }
    struct sigaction before_ {};
};

void takeEnd(int state, Ending& ending) {
    if (WIFEXITED(state)) ending.status = WEXITSTATUS(state);
    if (WIFSIGNALED(state)) ending.signal = WTERMSIG(state);
}

std::string textOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// One traced run.
class Trace {
  public:
    Trace(const Command& command, std::vector<const CallKind*> kinds, const Injection* injection)
        : kinds_(std::move(kinds)), injection_(injection) {
        std::vector<long> calls;
        for (const CallKind* kind : kinds_) {
            calls.insert(calls.end(), kind->numbers.begin(), kind->numbers.end());
        }
        process_ = startTraced(command, calls);
        const Alarm alarm(command.seconds);
        int state = 0;
        if (::waitpid(process_, &state, __WALL) != process_ || !WIFSTOPPED(state) ||
            ::ptrace(PTRACE_SETOPTIONS, process_, nullptr, kOptions) != 0) {
            ::kill(process_, SIGKILL);
            ::waitpid(process_, &state, __WALL);
            throw std::runtime_error("a program cannot be traced here");
        }
        go(process_, 0);
        follow();
    }
    Ending ending;

  private:
    static void go(pid_t thread, int signal) {
        ::ptrace(PTRACE_CONT, thread, nullptr, static_cast<long>(signal));
    }

    void follow() {
        while (true) {
            int state = 0;
            const pid_t thread = ::waitpid(-1, &state, __WALL);
            if (thread < 0 && errno == EINTR) {
                ending.hung = true;
                ::kill(process_, SIGKILL);
                ::kill(-process_, SIGKILL);
                continue;
            }
            if (thread < 0) return;
            if (!WIFSTOPPED(state)) {
                if (thread == process_) takeEnd(state, ending);
                continue;
            }
            stopped(thread, state);
        }
    }

    void stopped(pid_t thread, int state) {
        const int event = state >> 16;
        const int signal = WSTOPSIG(state);
        if (signal == kCallExit) return failAfterwards(thread);
        if (event == PTRACE_EVENT_SECCOMP) return atCall(thread);
        if (event == PTRACE_EVENT_EXEC && entry_ == 0) plantBreakpoint();
        if (event == 0 && signal == SIGTRAP && thread == process_ && !armed_) {
            removeBreakpoint();
            return go(thread, 0);
        }
        // A new thread begins with a stop of its own.
        const bool begins = event == 0 && signal == SIGSTOP && begun_.insert(thread).second;
        go(thread, event != 0 || begins ? 0 : signal);
    }

    void plantBreakpoint() {
        entry_ = entryOf(process_);
        code_ = ::ptrace(PTRACE_PEEKTEXT, process_, entry_, nullptr);
        ::ptrace(PTRACE_POKETEXT, process_, entry_, (code_ & ~0xffL) | 0xcc);
    }
    void removeBreakpoint() {
        ::ptrace(PTRACE_POKETEXT, process_, entry_, code_);
        Registers(process_).stepBackOverBreakpoint();
        armed_ = true;
    }

    void atCall(pid_t thread) {
        Registers registers(thread);
        const CallKind* kind = armed_ ? kindOf(registers) : nullptr;
        if (!kind) return go(thread, 0);
        const long count = ++ending.calls[kind->name];
        const bool hit = injection_ && kind == injection_->kind && count == injection_->number;
        const bool follows =
            injection_ && ending.reached && injection_->fault.lasting && needsSpace(*kind);
        if (!hit && !follows) return go(thread, 0);
        if (hit) {
            ending.reached = true;
            ending.met = describe(registers);
        }
        if (injection_->fault.kills) {
            ::kill(process_, SIGKILL);
            return;
        }
        // A file is closed even when that fails.
        if (registers.call() == SYS_close) {
            ::ptrace(PTRACE_SYSCALL, thread, nullptr, nullptr);
            return;
        }
        registers.skipCall(-injection_->fault.error);
        go(thread, 0);
    }
    void failAfterwards(pid_t thread) {
        Registers(thread).setResult(-injection_->fault.error);
        go(thread, 0);
    }

    // The kind that a call counts for. What the program says about its failures is left alone, and
    // of fcntl only locks count.
    const CallKind* kindOf(const Registers& registers) const {
        const long call = registers.call();
        if (call == SYS_fcntl) {
            const std::set<unsigned long> locks = {F_SETLK, F_SETLKW, F_OFD_SETLK, F_OFD_SETLKW};
            if (!locks.contains(registers.argument(1))) return nullptr;
        }
        const bool ofFile = call == SYS_write || call == SYS_writev || call == SYS_close;
        if (ofFile && registers.argument(0) == 2) return nullptr;
        for (const CallKind* kind : kinds_) {
            if (std::ranges::count(kind->numbers, call) > 0) return kind;
        }
        return nullptr;
    }

    std::string describe(const Registers& registers) const {
        switch (registers.call()) {
            case SYS_open:
            case SYS_creat:
            case SYS_unlink:
            case SYS_rmdir:
            case SYS_mkdir:
            case SYS_stat:
            case SYS_lstat:
                return path(registers.argument(0));
            case SYS_rename:
                return path(registers.argument(0)) + " to " + path(registers.argument(1));
            case SYS_renameat:
            case SYS_renameat2:
                return path(registers.argument(1)) + " to " + path(registers.argument(3));
            case SYS_openat:
            case SYS_unlinkat:
            case SYS_mkdirat:
                return path(registers.argument(1));
            case SYS_newfstatat:
            case SYS_statx: {
                const std::string named = path(registers.argument(1));
                return named.empty() ? openFile(registers.argument(0)) : named;
            }
            case SYS_mmap:
            case SYS_clone:
            case SYS_clone3:
                return {};
            default:
                return openFile(registers.argument(0));
        }
    }
    std::string openFile(unsigned long descriptor) const {
        std::array<char, 4096> target{};
        const std::string link = "/proc/" + std::to_string(process_) + "/fd/" +
                                 std::to_string(static_cast<int>(descriptor));
        const auto length = ::readlink(link.c_str(), target.data(), target.size());
        return length > 0 ? std::string(target.data(), static_cast<std::size_t>(length)) : "";
    }
    std::string path(unsigned long address) const {
        const std::string memory = "/proc/" + std::to_string(process_) + "/mem";
        const int file = ::open(memory.c_str(), O_RDONLY | O_CLOEXEC);
        std::array<char, 512> text{};
        const auto length =
            ::pread(file, text.data(), text.size() - 1, static_cast<off_t>(address));
        ::close(file);
        return length > 0 ? std::string(text.data()) : "";
    }

    std::vector<const CallKind*> kinds_;
    const Injection* injection_;
    pid_t process_ = 0;
    unsigned long entry_ = 0;
    long code_ = 0;
    bool armed_ = false;
    std::set<pid_t> begun_;
};

Ending withErrors(Ending ending, const Command& command) {
    ending.errors = textOf(command.folder + "/stderr.txt");
    return ending;
}

}  // namespace

std::string whyNoTracing(const std::string& folder) {
    if (!kRegistersKnown) return "the registers of this machine's processor are not known here";
    try {
        const Ending tried = runCounting({{"/bin/true"}, folder, 10});
        return tried.status == 0 ? "" : "a traced program does not end as it should";
    } catch (const std::exception& e) {
        return e.what();
    }
}

Ending run(const Command& command) {
    Ending ending;
    const pid_t child = startPlain(command);
    const Alarm alarm(command.seconds);
    int state = 0;
    while (::waitpid(child, &state, 0) != child) {
        ending.hung = true;
        ::kill(child, SIGKILL);
    }
    takeEnd(state, ending);
    return withErrors(ending, command);
}

Ending runCounting(const Command& command) {
    std::vector<const CallKind*> all;
    for (const CallKind& kind : callKinds()) all.push_back(&kind);
    return withErrors(Trace(command, all, nullptr).ending, command);
}

Ending runWithFault(const Command& command, const Injection& injection) {
    std::vector<const CallKind*> kinds = {injection.kind};
    for (const CallKind& kind : callKinds()) {
        if (injection.fault.lasting && needsSpace(kind) && &kind != injection.kind) {
            kinds.push_back(&kind);
        }
    }
    return withErrors(Trace(command, kinds, &injection).ending, command);
}

}  // namespace velmora::faults
