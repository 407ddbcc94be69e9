// SPDX-License-Identifier: MIT
// What must hold after a step that a fault met, and after the undisturbed run that follows.
#pragma once

#include <string>
#include <vector>

#include "tests/faults/contents.h"
#include "tests/faults/tracer.h"

namespace velmora::faults {

// A project around a step.
struct Undisturbed {
    Contents before;
    Contents after;      // when nothing disturbs the step
    std::string errors;  // what it then writes to standard error
};

// What is wrong; each line begins with its cause and a colon. Databases are opened as copies in
// `folder`.
using Complaints = std::vector<std::string>;

// After the disturbed run: an exit status of its own; with status 0 everything made and the same as
// undisturbed; otherwise a reason on standard error, every dataset old or new and whole; inputs as
// they were but for the stations' working fields.
Complaints judgeFault(const Undisturbed& step, const Ending& ending, bool killed,
                      const Contents& now, const std::string& folder);

// After the next run, which nothing disturbed: status 0, everything the same, no unfinished names
// left.
Complaints judgeNextRun(const Undisturbed& step, const Ending& ending, const Contents& now,
                        const std::string& folder);

}  // namespace velmora::faults
