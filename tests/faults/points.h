// SPDX-License-Identifier: MIT
// Fault points: which step is disturbed, at which call, how, and at the how manieth one.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace velmora::faults {

struct Point {
    std::string step;
    std::string call;
    std::string error;
    long number = 1;

    bool operator==(const Point&) const = default;
};

std::string textOf(const Point& point);    // "nir:write:EIO:7"
Point pointFrom(const std::string& text);  // throws std::runtime_error for any other form

// How often each step makes each kind of call when nothing disturbs it.
using Counts = std::map<std::string, std::map<std::string, long>>;

// Draws points so that steps, and within a step kinds of calls, errors and numbers, come evenly:
// every (step, call, error) that there is comes once, in an order of chance, before any comes
// again. Numbers are spread over the calls that there are. The same seed gives the same points on
// every machine.
std::vector<Point> draw(const Counts& counts, std::size_t points, unsigned seed);

}  // namespace velmora::faults
