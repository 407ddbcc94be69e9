// SPDX-License-Identifier: MIT
// The system calls that can fail or be the last one, by names that span their variants, and how.
#pragma once

#include <string>
#include <vector>

namespace velmora::faults {

struct CallKind {
    std::string name;                 // "open" spans open, openat, openat2 and creat
    std::vector<long> numbers;        // of the system
    std::vector<std::string> errors;  // names as faultOf() takes them
};

// What happens at a call.
struct Fault {
    int error = 0;         // the errno that the call fails with
    bool lasting = false;  // every later call that writes fails as well, as on a full disk
    bool kills = false;    // the program is killed as it enters the call
};

const std::vector<CallKind>& callKinds();
// Throws std::runtime_error for a name that there is not.
const CallKind& callKind(const std::string& name);
// "EIO", "ENOSPC", "ENOSPC+" (lasting), "KILL" ...; throws std::runtime_error otherwise.
Fault faultOf(const std::string& error);

// Whether calls of this kind need space on the disk, so that a full one makes them fail.
bool needsSpace(const CallKind& kind);

}  // namespace velmora::faults
