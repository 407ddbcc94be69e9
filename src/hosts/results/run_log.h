// SPDX-License-Identifier: MIT
// What the command notes of its runs in the output folder, for the report.
#pragma once

#include <string>
#include <vector>

#include "gis/files.h"

namespace velmora {

// The last run of a step.
struct StepRun {
    std::string step;
    bool done = false;
    double seconds = 0;
    std::vector<std::string> messages;
    std::string ended;  // local time; set when it is noted
};

// Notes a run in the file "velmora_runs.json" of the settings' output folder, in the place of the
// step's last one. What kept it from being noted, "" for nothing; a run without settings or folder
// has nowhere to be noted.
std::string noteRun(IFileSystem& files, const std::string& settingsFolder, const StepRun& run);

// The noted runs, in the order in which they ended; none when there is no such file.
std::vector<StepRun> notedRuns(const std::string& outputFolder);

}  // namespace velmora
