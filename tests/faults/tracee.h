// SPDX-License-Identifier: MIT
// The side of the program that is traced: what a child does between fork and exec.
#pragma once

#include <sys/types.h>

#include <vector>

#include "tests/faults/tracer.h"

namespace velmora::faults {

// Starts the program stopped before its exec, in a process group of its own, with a filter that
// stops it at these calls. Throws std::runtime_error when that fails.
pid_t startTraced(const Command& command, const std::vector<long>& calls);
// Starts it untraced.
pid_t startPlain(const Command& command);

// Where the program's own code begins, after the loader's.
unsigned long entryOf(pid_t process);

}  // namespace velmora::faults
