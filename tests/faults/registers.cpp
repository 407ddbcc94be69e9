// SPDX-License-Identifier: MIT
#include "tests/faults/registers.h"

#include <sys/ptrace.h>

namespace velmora::faults {

#if defined(__x86_64__)

Registers::Registers(pid_t thread) : thread_(thread) {
    ::ptrace(PTRACE_GETREGS, thread_, nullptr, &values_);
}

long Registers::call() const { return static_cast<long>(values_.orig_rax); }

unsigned long Registers::argument(int index) const {
    const std::array<unsigned long, 6> all = {values_.rdi, values_.rsi, values_.rdx,
                                              values_.r10, values_.r8,  values_.r9};
    return all.at(static_cast<std::size_t>(index));
}

void Registers::skipCall(long result) {
    values_.orig_rax = static_cast<unsigned long>(-1);
    setResult(result);
}

void Registers::setResult(long result) {
    values_.rax = static_cast<unsigned long>(result);
    store();
}

void Registers::stepBackOverBreakpoint() {
    --values_.rip;
    store();
}

void Registers::store() { ::ptrace(PTRACE_SETREGS, thread_, nullptr, &values_); }

#else

Registers::Registers(pid_t thread) : thread_(thread) {}
long Registers::call() const { return -1; }
unsigned long Registers::argument(int) const { return 0; }
void Registers::skipCall(long) {}
void Registers::setResult(long) {}
void Registers::stepBackOverBreakpoint() {}
void Registers::store() {}

#endif

}  // namespace velmora::faults
