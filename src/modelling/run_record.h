// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "gis/application.h"
#include "modelling/station_surface.h"
#include "modelling/step_record.h"
#include "settings/run_settings.h"

namespace velmora {

// A run of a step, noted for the steps after it (step_record.h) and recorded for those who have to
// defend its numbers (gis/run_journal.h). A run that does not come to finish() is recorded as
// failed. One at a time.
class RunRecord {
  public:
    // Begins note and record anew, with the last runs of the steps whose grids are read. Throws
    // PlatformError when the output folder cannot be written to.
    RunRecord(IApplication& application, const RunSettings& settings, const std::string& step,
              const std::vector<std::string>& sources = {});
    ~RunRecord();
    RunRecord(const RunRecord&) = delete;
    RunRecord& operator=(const RunRecord&) = delete;

    void made(const std::string& grid);
    // What the surface has been made of; after it has been made.
    void surface(const StationSurface& surface);
    void quality(const QualityNote& note);
    // Everything is made and has reached the disk; the run still is a failed one when a failure has
    // been shown meanwhile. Throws PlatformError when the record cannot be written.
    void finish();
    // Does a part of the run. What ends it is recorded, and thrown on.
    template <class Part>
    void during(Part part) {
        try {
            part();
        } catch (const std::exception& e) {
            warn(e.what());
            throw;
        }
    }

  private:
    class Listener;
    void warn(const std::string& text);

    IApplication& application_;
    StepRecorder note_;
    std::unique_ptr<Listener> listener_;
    std::size_t failuresBefore_;
    bool finished_ = false;
};

}  // namespace velmora
