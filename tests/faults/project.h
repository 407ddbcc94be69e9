// SPDX-License-Identifier: MIT
// A small project and its states around every step, each reached by the program itself.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/faults/judge.h"
#include "tests/faults/points.h"
#include "tests/faults/tracer.h"

namespace velmora::faults {

// A step over older results of another cell size, or ("STEP@first") in a project without any.
struct Stage {
    std::vector<std::string> words;  // of the command
    std::string folder;              // a copy of the project as it is before the step
    Undisturbed undisturbed;
};

class Project {
  public:
    // Makes everything in `folder`, which must be empty. Throws std::runtime_error when a step
    // fails although nothing disturbs it.
    Project(std::string program, std::string folder);

    std::vector<std::string> steps() const;
    const Stage& stage(const std::string& step) const;  // throws std::runtime_error

    void restore(const std::string& step) const;  // the project as it is before the step
    Command command(const std::string& step) const;
    Contents contents() const;  // of the project now
    const std::string& scratch() const { return scratch_; }

    Counts count() const;  // each step's calls

  private:
    using Words = std::vector<std::string>;
    Command commandOf(const Words& words) const;
    std::string succeed(const Words& words) const;  // what it wrote to standard error
    void makeInputs() const;
    void use(const std::string& cellSize) const;
    void runThrough(const std::string& share, const std::string& suffix);

    std::string program_;
    std::string basin_;    // the project that commands work on
    std::string scratch_;  // where they run, beside it
    std::string kept_;     // the copies
    std::map<std::string, Stage> stages_;
};

}  // namespace velmora::faults
