// SPDX-License-Identifier: MIT
// A step carried out by the command, and what came of it.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "hosts/cli/commands.h"
#include "hosts/cli/terminal.h"

namespace velmora::cli {

struct StepResult {
    std::string step;
    bool done = false;
    double seconds = 0;
    std::vector<Told> told;
    std::vector<std::string> made;       // the grids and tables that the step shows, paths
    nlohmann::ordered_json diagnostics;  // null unless asked for
};

// Clicks the step's command, of refet with what is asked for beside its grids, and notes the run in
// the output folder. What the step throws is told and makes it a failed one.
StepResult carryOut(const Session& session, const std::string& step, bool diagnose,
                    const EfficiencyOptions& efficiency, const BesideRefEt& beside);

// Tells what ended a step before it could say so itself, with `json` for programs too.
void tellError(StepResult& result, const std::string& text, const ErrorPlace& place, bool json);

// "step", "done", "seconds", and what was told by its kinds: "errors", "messages", "reasons",
// "notices"; "failures", those of them that failed with where (failure.h); "made", and
// "diagnostics" where there are any.
nlohmann::ordered_json jsonOf(const StepResult& result);

}  // namespace velmora::cli
