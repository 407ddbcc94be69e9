// SPDX-License-Identifier: MIT
#include "tests/faults/tracee.h"

#include <elf.h>
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstddef>
#include <stdexcept>

namespace velmora::faults {

namespace {

#if defined(__x86_64__)
constexpr unsigned kArchitecture = AUDIT_ARCH_X86_64;
#else
constexpr unsigned kArchitecture = 0;
#endif

std::vector<sock_filter> filterOf(const std::vector<long>& calls) {
    std::vector<sock_filter> filter = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kArchitecture, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (const long call : calls) {
        filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1));
        filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRACE));
    }
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    return filter;
}

// In the child, which may only call what is safe after a fork.
[[noreturn]] void becomeProgram(const Command& command, char* const* words) {
    const auto send = [](const char* file, int stream, int mode) {
        const int opened = ::open(file, mode | O_CLOEXEC, 0644);
        if (opened < 0 || ::dup2(opened, stream) < 0) ::_exit(126);
    };
    if (::chdir(command.folder.c_str()) != 0) ::_exit(126);
    send("/dev/null", 0, O_RDONLY);
    send("stdout.txt", 1, O_WRONLY | O_CREAT | O_TRUNC);
    send("stderr.txt", 2, O_WRONLY | O_CREAT | O_TRUNC);
    ::execv(words[0], words);
    ::_exit(127);
}

struct Words {
    explicit Words(std::vector<std::string> all) : texts(std::move(all)) {
        for (std::string& text : texts) pointers.push_back(text.data());
        pointers.push_back(nullptr);
    }
    std::vector<std::string> texts;
    std::vector<char*> pointers;
};

pid_t forked() {
    const pid_t child = ::fork();
    if (child < 0) throw std::runtime_error("no process can be started");
    return child;
}

}  // namespace

pid_t startTraced(const Command& command, const std::vector<long>& calls) {
    Words words(command.words);
    std::vector<sock_filter> filter = filterOf(calls);
    const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    const pid_t child = forked();
    if (child != 0) return child;
    ::setpgid(0, 0);
    if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(125);
    ::raise(SIGSTOP);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    if (::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) ::_exit(125);
    becomeProgram(command, words.pointers.data());
}

pid_t startPlain(const Command& command) {
    Words words(command.words);
    const pid_t child = forked();
    if (child != 0) return child;
    ::setpgid(0, 0);
    becomeProgram(command, words.pointers.data());
}

unsigned long entryOf(pid_t process) {
    const std::string path = "/proc/" + std::to_string(process) + "/auxv";
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    std::array<unsigned long, 2> pair{};
    unsigned long entry = 0;
    while (file >= 0 && ::read(file, pair.data(), sizeof pair) == sizeof pair) {
        if (pair[0] == AT_ENTRY) entry = pair[1];
    }
    if (file >= 0) ::close(file);
    if (entry == 0) throw std::runtime_error("the program's entry is not to be found");
    return entry;
}

}  // namespace velmora::faults
