// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "gis/run_journal.h"

namespace velmora::platform {

// Who runs, in this process: told by its host before the first run.
struct Origin {
    std::string version;     // of the program
    std::string build;       // of the program's source and compiler
    std::string host;        // "velmora command", "QGIS 3.22.16"
    bool anonymous = false;  // records name neither user nor machine
};
void setOrigin(Origin origin);

// Keeps the run that goes on, and writes its record (docs/file-formats.md).
class Journal : public IRunJournal {
  public:
    Journal();
    ~Journal() override;
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    void begin(const RunHeading& heading) override;
    void surface(const SurfaceNote& note) override;
    void quality(const QualityNote& note) override;
    void warning(const std::string& text) override;
    void end(RunEnding ending) override;

  private:
    struct Run;
    std::unique_ptr<Run> run_;
};

}  // namespace velmora::platform
