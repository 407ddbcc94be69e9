// SPDX-License-Identifier: MIT
#include "platform/records/journal.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

#include "gis/errors.h"
#include "gis/quality_note.h"
#include "platform/files/posix_file.h"
#include "platform/files/run_notes.h"
#include "platform/files/unfinished_file.h"
#include "platform/records/dataset_files.h"
#include "platform/records/record_parts.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

namespace {

constexpr int kVersion = 1;  // of the record's form

Origin& origin() {
    static Origin known;
    return known;
}

Json starter() {
    if (origin().anonymous) return nullptr;
    const passwd* const user = ::getpwuid(::getuid());
    std::array<char, 256> machine{};
    ::gethostname(machine.data(), machine.size() - 1);
    return {{"user", user ? std::string(user->pw_name) : std::to_string(::getuid())},
            {"machine", machine.data()}};
}

// While it lives, loops neither report nor end because the run has been cancelled: its record is
// written all the same.
class Unwatched {
  public:
    Unwatched() : before_(watchLoops(nullptr)) {}
    ~Unwatched() { watchLoops(before_); }
    Unwatched(const Unwatched&) = delete;
    Unwatched& operator=(const Unwatched&) = delete;

  private:
    IFeedback* before_;
};

Json jsonOf(const SurfaceNote& note) {
    Json leftOut = Json::array();
    for (const ExcludedStation& station : note.leftOut) {
        leftOut.push_back({{"station", station.station}, {"reason", station.reason}});
    }
    Json json = {{"surface", note.surface},
                 {"field", note.field},
                 {"estimator", note.estimator},
                 {"stations", note.used},
                 {"left_out", std::move(leftOut)}};
    if (note.trend) {
        json["line"] = {{"a", note.trend->a},
                        {"b_per_metre", note.trend->b},
                        {"slope_probability", nullptr},
                        {"lowest_station", note.lowest},
                        {"highest_station", note.highest}};
        if (note.slopeProbability) json["line"]["slope_probability"] = *note.slopeProbability;
    }
    return json;
}

Json jsonOf(const QualityNote::Flag& flag) {
    Json json = {{"flag", flag.flag},
                 {"bit", flag.bit},
                 {"cells", flag.cells},
                 {"share", flag.share},
                 {"worst", nullptr}};
    if (flag.worst) {
        json["worst"] = {{"value", flag.worst->value},
                         {"unit", flag.unit},
                         {"column", flag.worst->column},
                         {"row", flag.worst->row}};
    }
    if (!flag.surfaces.empty()) json["surfaces"] = flag.surfaces;
    return json;
}

Json jsonOf(const QualityNote& note) {
    Json flags = Json::array();
    for (const QualityNote::Flag& flag : note.flags) flags.push_back(jsonOf(flag));
    return {{"grid", note.grid},
            {"month", note.month},
            {"cells", note.cells},
            {"flags", std::move(flags)}};
}

}  // namespace

void setOrigin(Origin value) { origin() = std::move(value); }

struct Journal::Run {
    std::string path;
    RunHeading heading;
    RunNotes notes;
    Json record;

    void store() const {
        UnfinishedFile file(path);
        writeWholeFile(file.path(), recordText(record));
        file.finish();
    }
};

Journal::Journal() = default;
Journal::~Journal() {
    if (run_) keepNotes(nullptr);
}

void Journal::begin(const RunHeading& heading) {
    keepNotes(nullptr);
    run_ = std::make_unique<Run>();
    run_->path = recordPath(heading.folder, heading.step);
    run_->heading = heading;
    Json& record = run_->record;
    record = {{"format", "velmora run record"},
              {"version", kVersion},
              {"step", heading.step},
              {"run", heading.run},
              {"state", "running"},
              {"began", nowText()},
              {"ended", nullptr},
              {"program",
               {{"version", origin().version},
                {"build", origin().build},
                {"host", origin().host},
                {"libraries", libraryVersions()}}},
              {"started_by", starter()}};
    record["settings"] = Json::object();
    for (const auto& [field, value] : heading.settings) record["settings"][field] = value;
    record["sources"] = Json::object();
    for (const auto& [step, run] : heading.sources) record["sources"][step] = run;
    for (const char* list :
         {"inputs", "statements", "surfaces", "quality", "outputs", "warnings"}) {
        record[list] = Json::array();
    }
    run_->store();
    keepNotes(&run_->notes);
}

void Journal::surface(const SurfaceNote& note) {
    if (run_) run_->record["surfaces"].push_back(jsonOf(note));
}

void Journal::quality(const QualityNote& note) {
    if (run_) run_->record["quality"].push_back(jsonOf(note));
}

void Journal::warning(const std::string& text) {
    if (!run_) return;
    Json& warnings = run_->record["warnings"];
    if (std::ranges::find(warnings, Json(text)) == warnings.end()) warnings.push_back(text);
}

void Journal::end(RunEnding ending) {
    if (!run_) return;
    keepNotes(nullptr);
    const Unwatched notCancelled;
    const std::unique_ptr<Run> run = std::move(run_);
    const RunNotes& notes = run->notes;
    Json& record = run->record;
    record["state"] = ending == RunEnding::complete ? "complete" : "failed";
    const RunHeading& heading = run->heading;
    record["inputs"] = inputsOf(notes, heading, ending);
    for (const std::string& text : notes.statements) {
        record["statements"].push_back({{"text", text}, {"times", notes.executed.at(text)}});
    }
    record["outputs"] = outputsOf(notes, heading.folder);
    record["ended"] = nowText();
    run->store();
}

}  // namespace velmora::platform
