// SPDX-License-Identifier: MIT
// Runs a program as its debugger and lets one of its system calls fail, or kills it there. Calls
// count from the program's own entry, after the loader has done its work; all threads and children
// count together. A filter in the kernel stops the program only at the calls that are asked for.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/faults/calls.h"

namespace velmora::faults {

struct Injection {
    const CallKind* kind = nullptr;
    long number = 1;  // the call of this kind that the fault meets, from 1
    Fault fault;
};

struct Command {
    std::vector<std::string> words;  // the program's path and its arguments
    std::string folder;              // where it runs; stdout.txt and stderr.txt are written there
    int seconds = 60;                // after which it counts as hanging
};

struct Ending {
    int status = -1;       // the exit status; -1 when a signal ended it
    int signal = 0;        // the signal that ended it
    bool hung = false;     // it had to be stopped
    bool reached = false;  // the fault was met
    std::string met;       // the call and the file that it concerned, as far as that is known
    std::map<std::string, long> calls;  // how many of each kind, when they are counted
    std::string errors;                 // what it wrote to standard error
};

// Why programs cannot be traced here (tried in a folder that can be written); empty when they can.
std::string whyNoTracing(const std::string& folder);

// Each throws std::runtime_error when the program cannot be started.
Ending run(const Command& command);
Ending runCounting(const Command& command);
Ending runWithFault(const Command& command, const Injection& injection);

}  // namespace velmora::faults
