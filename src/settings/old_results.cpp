// SPDX-License-Identifier: MIT
#include "settings/old_results.h"

#include <algorithm>
#include <map>
#include <optional>

#include "gis/errors.h"
#include "gis/grid.h"
#include "gis/month_names.h"
#include "gis/text.h"
#include "settings/step_record.h"

namespace velmora {

namespace {

// The grids of one maker that a step reads.
struct Source {
    std::string maker;
    std::vector<std::string> grids;
};

// A grid that is read under another name than the one under which it was made.
struct Copy {
    std::string made;
    std::string read;
};

struct Inputs {
    std::vector<Source> sources;
    std::vector<Copy> copies;
};

const std::map<std::string, std::string> kTitles = {{"refet", "reference ET"},
                                                    {"kc", "the Kc maps"},
                                                    {"cropet", "crop ET"},
                                                    {"ppt", "precipitation"},
                                                    {"eff", "the efficiency map"}};

std::vector<std::string> monthly(const RunSettings& settings, const std::string& prefix,
                                 const std::string& tag) {
    std::vector<std::string> names;
    for (const int month : settings.months()) names.push_back(prefix + GetMonthName(month) + tag);
    return names;
}

Inputs inputsOf(const RunSettings& settings, const std::string& step) {
    Inputs inputs;
    const std::string tag = settings.methodTag();
    if (step == "cropet") {
        inputs.sources = {{"refet", monthly(settings, "RefET_", tag)},
                          {"kc", monthly(settings, "Kc_", tag)}};
        for (const std::string& made : inputs.sources.back().grids) {
            inputs.copies.push_back({made, made.substr(0, made.size() - tag.size())});
        }
    }
    if (step == "nir" || step == "irr") {
        inputs.sources = {{"cropet", monthly(settings, "ET_", tag)},
                          {"ppt", monthly(settings, "PPT_", "")}};
    }
    if (step == "irr") {
        inputs.sources.push_back({"eff", {"IREF"}});
        inputs.copies.push_back({"IREF", "faef_500"});
    }
    return inputs;
}

bool sameValues(const IRaster& a, const IRaster& b) {
    const GridGeometry& cells = a.geometry();
    if (!cells.sameCells(b.geometry())) return false;
    std::vector<float> ours(static_cast<std::size_t>(cells.columns));
    std::vector<float> theirs(ours.size());
    for (int row = 0; row < cells.rows; ++row) {
        a.read({0, row, cells.columns, 1}, ours);
        b.read({0, row, cells.columns, 1}, theirs);
        if (ours != theirs) return false;
    }
    return true;
}

class OldInputs {
  public:
    OldInputs(IPlatform& platform, const RunSettings& settings)
        : files_(platform.files()),
          settings_(settings),
          workspace_(platform.rasters().openFromFolder(settings.OutputWorkspace)) {}

    std::vector<std::string> of(const std::string& step) {
        const Inputs inputs = inputsOf(settings_, step);
        for (const Source& source : inputs.sources) lookAt(source);
        for (const Copy& copy : inputs.copies) lookAt(copy);
        return sentences_;
    }

  private:
    void lookAt(const Source& source) {
        const auto run = lastRunOf(source.maker);
        if (!run) return;
        const std::string& title = kTitles.at(source.maker);
        std::vector<std::string> earlier;
        for (const std::string& grid : source.grids) {
            if (!run->lists(grid) && workspace_->exists(grid)) earlier.push_back(grid);
        }
        if (!earlier.empty()) {
            tell(joinedNames(earlier) + ": not made by the last run of " + title +
                 ", but left from an earlier one");
        }
        for (const auto& [field, now] : recordedSettings(settings_)) {
            const auto then = run->settings.find(field);
            if (then != run->settings.end() && then->second != now) {
                tell("The last run of " + title + " was made with " + field + "=" + then->second +
                     ", and the settings now say " + now);
            }
        }
        for (const auto& [step, used] : run->used) {
            const auto last = lastRunOf(step);
            if (last && last->run != used) {
                tell("The last run of " + title + " read " + kTitles.at(step) +
                     " of an earlier run than the last");
            }
        }
    }

    // The step's last run, nothing when none is noted or its note cannot be read, which is told.
    std::optional<StepRecord> lastRunOf(const std::string& step) {
        try {
            return lastRun(files_, settings_.OutputWorkspace, step);
        } catch (const PlatformError& e) {
            tell(std::string(e.what()) + ": it cannot be told what the last run of " +
                 kTitles.at(step) + " made; run that step again");
            return std::nullopt;
        }
    }

    void lookAt(const Copy& copy) {
        try {
            compare(copy);
        } catch (const PlatformError&) {
            return;  // whoever reads the grid says so
        }
    }

    // Times alone do not say it: whoever copies a folder may turn them round.
    void compare(const Copy& copy) {
        if (!workspace_->exists(copy.made) || !workspace_->exists(copy.read)) return;
        const auto made = workspace_->openRasterDataset(copy.made);
        const auto read = workspace_->openRasterDataset(copy.read);
        if (read->modified() >= made->modified() ||
            sameValues(*made->createDefaultRaster(), *read->createDefaultRaster())) {
            return;
        }
        tell(copy.read + " is older than " + copy.made +
             " and differs from it: velmora grid copy " + copy.made + " " + copy.read +
             " renews it");
    }

    // Each sentence once, though several grids may give it.
    void tell(const std::string& sentence) {
        if (std::ranges::find(sentences_, sentence) == sentences_.end()) {
            sentences_.push_back(sentence);
        }
    }

    const IFileSystem& files_;
    const RunSettings& settings_;
    std::unique_ptr<IRasterWorkspace> workspace_;
    std::vector<std::string> sentences_;
};

}  // namespace

std::vector<std::string> oldInputs(IPlatform& platform, const RunSettings& settings,
                                   const std::string& step) {
    if (!platform.files().folderExists(settings.OutputWorkspace)) return {};
    return OldInputs(platform, settings).of(step);
}

}  // namespace velmora
