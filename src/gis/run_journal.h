// SPDX-License-Identifier: MIT
// What a run did, kept for those who have to defend its numbers. The step says what it is about;
// what it reads, writes and executes meanwhile, the platform sees itself.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "gis/diagnostics.h"
#include "gis/linear_trend.h"

namespace velmora {

// What is known of a run when it begins.
struct RunHeading {
    std::string folder;                                         // its output folder
    std::string step;                                           // "refet"
    std::string run;                                            // marks this run among all
    std::vector<std::pair<std::string, std::string>> settings;  // all of them: field and value
    std::map<std::string, std::string> sources;  // by step: the run whose grids this one reads
    // Fields of the stations' table that every run overwrites: no part of what a run is made of.
    std::vector<std::string> workingFields;
};

// The stations behind one surface.
struct SurfaceNote {
    std::string surface;    // "PPT_Jan"
    std::string field;      // "weather.P_Jan"
    std::string estimator;  // "inverse distance" or "kriging"
    std::size_t used = 0;
    std::vector<ExcludedStation> leftOut;
    std::optional<LinearTrend> trend;  // over elevation in metres, where values are detrended
    // Of the line: the probability of such a slope where elevation has no effect (trend_test.h),
    // and the elevations of its stations, metres.
    std::optional<double> slopeProbability;
    double lowest = 0;
    double highest = 0;
};

struct QualityNote;

enum class RunEnding { complete, failed };

// Keeps one run at a time; its record lies in the output folder, "velmora_record_<step>.json".
class IRunJournal {
  public:
    virtual ~IRunJournal() = default;
    // Puts a record of the run in the place of the last one, which says that the run is going on.
    // Throws PlatformError when it cannot be written.
    virtual void begin(const RunHeading& heading) = 0;
    virtual void surface(const SurfaceNote& note) = 0;
    virtual void quality(const QualityNote& note) = 0;
    // Told to the user though nothing failed, or a failure; the same text counts once.
    virtual void warning(const std::string& text) = 0;
    // Writes the whole record: settings, inputs and outputs with their hashes. Throws PlatformError
    // when an input cannot be read or the record cannot be written.
    virtual void end(RunEnding ending) = 0;
};

}  // namespace velmora
