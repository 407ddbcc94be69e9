// SPDX-License-Identifier: MIT
// The records that runs leave in an output folder, as reports read them (docs/file-formats.md).
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "gis/quality_note.h"
#include "settings/run_settings.h"

namespace velmora {

// A recorded time to the second, "2023-10-01 10:00:00 -06:00"; another text as it is.
std::string timeToSecond(const std::string& recorded);

struct RecordedFile {
    std::string path;
    std::uintmax_t bytes = 0;
    std::string modified;
    std::string sha256;  // "" for a grid that another step has made
};

struct RecordedInput {
    std::string path;
    std::string crs;  // names; "" for none
    std::string datum;
    std::string madeBy;  // the step that has made it, "" for none
    std::vector<RecordedFile> files;
};

struct RecordedSurface {
    struct LeftOut {
        std::string station;
        std::string reason;
    };
    std::string surface;  // "PPT_Jan"
    std::string field;
    std::string estimator;
    std::size_t stations = 0;  // that took part
    std::vector<LeftOut> leftOut;
};

using RecordedTexts = std::vector<std::pair<std::string, std::string>>;

// The last run of a step.
struct RecordedStep {
    std::string step;
    std::string run;    // its mark
    std::string state;  // "running", "complete" or "failed"
    std::string began;  // local time with its offset from UTC
    std::string ended;  // "" where it has not
    std::string version;
    std::string build;
    std::string host;
    std::string startedBy;    // "user on machine", "" where it is not told
    RecordedTexts libraries;  // name and version
    RecordedTexts texts;      // settings: field and value
    RunSettings settings;     // the same, with the folder of the record as output folder
    std::map<std::string, std::string> sources;  // by step: the run whose grids it reads
    std::vector<RecordedInput> inputs;
    std::vector<RecordedSurface> surfaces;
    std::vector<QualityNote> quality;  // by months of reference ET
    std::vector<std::string> warnings;

    bool complete() const { return state == "complete"; }
};

struct RunRecords {
    std::vector<RecordedStep> steps;    // in the order in which they are run
    std::vector<std::string> unusable;  // why records that are there cannot be used

    bool none() const { return steps.empty() && unusable.empty(); }
    const RecordedStep* of(std::string_view step) const;  // nullptr for none
    // What the step's last run was made for; `present` where no record tells.
    const RunSettings& settingsOf(std::string_view step, const RunSettings& present) const;
    // Of the last step in their order; `present` where there is none.
    const RunSettings& lastSettings(const RunSettings& present) const;
};

// Throws PlatformError when the folder cannot be looked at.
RunRecords readRunRecords(const std::string& folder);

}  // namespace velmora
