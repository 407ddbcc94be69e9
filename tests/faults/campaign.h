// SPDX-License-Identifier: MIT
// Many fault points, worked through by several processes, and what came of them.
#pragma once

#include <string>
#include <vector>

#include "tests/faults/judge.h"
#include "tests/faults/points.h"
#include "tests/faults/project.h"

namespace velmora::faults {

struct Outcome {
    Point point;
    Ending ending;
    Complaints fault;    // of the disturbed run
    Complaints nextRun;  // of the one after it

    bool isWrong() const { return !fault.empty() || !nextRun.empty(); }
};

// Disturbs one step of a project and runs it again.
Outcome tryPoint(const Project& project, const Point& point);

struct Campaign {
    std::string program;
    std::string folder;  // each process has a project of its own below it
    std::size_t points = 2000;
    unsigned seed = 1;
    int processes = 2;
};

// Draws the points and tries them. Outcomes come in the order in which the points were drawn.
std::vector<Outcome> tryAll(const Campaign& campaign);

}  // namespace velmora::faults
