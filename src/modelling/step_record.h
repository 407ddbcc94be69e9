// SPDX-License-Identifier: MIT
// What the last run of a step made, noted in the output folder in "velmora_made_<step>.txt". Grids
// of earlier runs stay in the folder under the same names, when a month fails or a period is
// shorter; the note tells them apart from those of the last run.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "gis/files.h"
#include "settings/run_settings.h"

namespace velmora {

struct StepRecord {
    std::string run;                              // marks this run among all
    std::map<std::string, std::string> settings;  // by field: where and when its grids belong
    std::map<std::string, std::string> used;      // by step: the run whose grids it read
    std::vector<std::string> made;                // grids, in the order in which they were made

    bool lists(const std::string& grid) const;
};

// The settings fields that a record keeps, line ends as blanks: grids of other cells, another
// domain or another year are no input of this run.
std::map<std::string, std::string> recordedSettings(const RunSettings& settings);

// The last run of a step, nothing when none is noted. Throws PlatformError, which names the note's
// file, when the note cannot be read or is damaged.
std::optional<StepRecord> lastRun(const IFileSystem& files, const std::string& outputFolder,
                                  const std::string& step);

// Notes a run while it goes on, so that a killed run leaves what it had made.
class StepRecorder {
  public:
    // Begins the note anew, with the last runs of the steps whose grids it reads ("unknown" where
    // the note of one cannot be read). Throws PlatformError when the folder cannot be written to.
    StepRecorder(IFileSystem& files, const RunSettings& settings, const std::string& step,
                 const std::vector<std::string>& sources = {});
    void made(const std::string& grid);
    const StepRecord& record() const { return record_; }

  private:
    void store() const;

    IFileSystem& files_;
    std::string path_;
    StepRecord record_;
};

}  // namespace velmora
