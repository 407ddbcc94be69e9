// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "gis/quality_note.h"
#include "gis/run_journal.h"
#include "tests/support/failure_point.h"

namespace velmora::test {

// Keeps what runs tell of themselves.
class FakeJournal : public IRunJournal {
  public:
    struct Run {
        RunHeading heading;
        std::vector<SurfaceNote> surfaces;
        std::vector<std::string> warnings;
        std::optional<RunEnding> ending;
        std::vector<QualityNote> quality;
    };

    void begin(const RunHeading& heading) override {
        begins.pass(heading.step);
        runs.push_back({heading, {}, {}, {}, {}});
    }
    void surface(const SurfaceNote& note) override { runs.back().surfaces.push_back(note); }
    void quality(const QualityNote& note) override { runs.back().quality.push_back(note); }
    void warning(const std::string& text) override {
        std::vector<std::string>& warnings = runs.back().warnings;
        if (std::ranges::find(warnings, text) == warnings.end()) warnings.push_back(text);
    }
    void end(RunEnding ending) override {
        if (ending == RunEnding::complete) ends.pass(runs.back().heading.step);
        runs.back().ending = ending;
    }

    std::vector<Run> runs;
    FailurePoint begins{"Cannot begin the record of "};
    FailurePoint ends{"Cannot write the record of "};
};

}  // namespace velmora::test
