// SPDX-License-Identifier: MIT
// The registers of a stopped program, as the system calls of this machine use them.
#pragma once

#include <sys/types.h>
#include <sys/user.h>

#include <array>

namespace velmora::faults {

#if defined(__x86_64__)
inline constexpr bool kRegistersKnown = true;
#else
inline constexpr bool kRegistersKnown = false;
#endif

class Registers {
  public:
    explicit Registers(pid_t thread);  // reads them
    long call() const;
    unsigned long argument(int index) const;  // from 0
    void skipCall(long result);               // at the entry: the call is not made
    void setResult(long result);              // at the exit
    void stepBackOverBreakpoint();

  private:
    void store();

    pid_t thread_;
    user_regs_struct values_{};
};

}  // namespace velmora::faults
