// SPDX-License-Identifier: MIT
#include "modelling/run_record.h"

#include "gis/errors.h"
#include "modelling/station_fields.h"
#include "modelling/surface_diagnostics.h"
#include "modelling/surface_ground.h"
#include "settings/recorded_settings.h"

namespace velmora {

namespace {

RunHeading headingOf(const RunSettings& settings, const std::string& step, const StepRecord& note) {
    RunHeading heading;
    heading.folder = settings.OutputWorkspace;
    heading.step = step;
    heading.run = note.run;
    heading.settings = settingsTexts(settings);
    heading.sources = note.used;
    heading.workingFields = {kTemperatureField, kPrecipitationField};
    return heading;
}

}  // namespace

// Hears all that the user is told while the run goes on.
class RunRecord::Listener : public IFeedbackListener, public IPromptsListener {
  public:
    explicit Listener(IApplication& application)
        : application_(application),
          listening_(application.feedback(), *this),
          before_(application.prompts().setListener(this)) {}
    ~Listener() override { application_.prompts().setListener(before_); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    void warned(const std::string& text) override { heard(text); }
    void heard(const std::string& text) override {
        application_.platform().journal().warning(text);
        if (before_) before_->heard(text);
    }

  private:
    IApplication& application_;
    Listening listening_;
    IPromptsListener* before_;
};

RunRecord::RunRecord(IApplication& application, const RunSettings& settings,
                     const std::string& step, const std::vector<std::string>& sources)
    : application_(application),
      note_(application.platform().files(), settings, step, sources),
      failuresBefore_(application.prompts().failures()) {
    application.platform().journal().begin(headingOf(settings, step, note_.record()));
    listener_ = std::make_unique<Listener>(application);
}

RunRecord::~RunRecord() {
    if (finished_) return;
    try {
        application_.platform().journal().end(RunEnding::failed);
    } catch (...) {
        return;  // the record goes on to say that the run has not come to its end
    }
}

void RunRecord::made(const std::string& grid) { note_.made(grid); }

void RunRecord::surface(const StationSurface& surface) {
    SurfaceNote note;
    note.surface = surface.name();
    note.field = surface.field();
    note.estimator = surface.kriged() ? "kriging" : "inverse distance";
    note.used = surface.valid().size();
    note.leftOut = stationsLeftOut(surface);
    note.trend = surface.trend();
    const SurfaceGround ground = groundOf(surface);
    if (ground.elevation) {
        note.lowest = ground.elevation->low;
        note.highest = ground.elevation->high;
        note.slopeProbability = ground.slopeProbability;
    }
    application_.platform().journal().surface(note);
}

void RunRecord::quality(const QualityNote& note) {
    application_.platform().journal().quality(note);
}

void RunRecord::warn(const std::string& text) { application_.platform().journal().warning(text); }

void RunRecord::finish() {
    const bool failed = application_.prompts().failures() != failuresBefore_;
    application_.platform().journal().end(failed ? RunEnding::failed : RunEnding::complete);
    finished_ = true;
}

}  // namespace velmora
