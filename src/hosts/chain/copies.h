// SPDX-License-Identifier: MIT
// Some steps look for a grid under another name than the one under which it is made. No step makes
// these copies by itself: here is decided which of them are due, for every host.
#pragma once

#include <string>
#include <vector>

#include "gis/application.h"
#include "modelling/step_inputs.h"
#include "settings/run_settings.h"

namespace velmora {

// A grid of the output folder and the name under which the next step reads it.
struct GridCopy {
    enum class State {
        nothing,   // there is no grid to copy: the step that reads it says what it misses
        missing,   // nothing stands under the name that is read
        renewed,   // the grid has been made in this job
        outdated,  // what stands under the name that is read is older than the grid, and differs
        standing   // what stands there is good, or the user's own raster file
    };
    StepInputs::Copy names;
    State state = State::nothing;

    // To be made without a question: nothing of the user's is lost.
    bool isDue() const { return state == State::missing || state == State::renewed; }
    // Worth a question to the user.
    bool isOffered() const { return isDue() || state == State::outdated; }
    // The step reads what is not of this job.
    bool isKept() const { return state == State::outdated || state == State::standing; }
};

// The copies of a step's product, none when its grids are read as they are made. `inThisJob` says
// that the step has just made them anew.
std::vector<GridCopy> copiesOfProduct(IPlatform& platform, const RunSettings& settings,
                                      const Product& product, bool inThisJob);

// The copies that a step reads, of which the steps of `makers` have made their grids in this job.
std::vector<GridCopy> copiesReadBy(IPlatform& platform, const RunSettings& settings,
                                   const std::string& step, const std::vector<std::string>& makers);

// Saves the grid under the name that is read, replacing an older one, while it holds the folder's
// lock. The path of the grid. Throws PlatformError, also when a run works in the folder.
std::string copyToName(IPlatform& platform, const std::string& folder,
                       const StepInputs::Copy& names);

}  // namespace velmora
