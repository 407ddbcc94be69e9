// SPDX-License-Identifier: MIT
#include "modelling/old_results.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "gis/errors.h"
#include "gis/raster_compare.h"
#include "gis/text.h"
#include "modelling/products.h"
#include "modelling/step_inputs.h"
#include "modelling/step_record.h"

namespace velmora {

namespace {

// What a step makes, inside a sentence.
std::string titleOf(std::string_view maker) { return std::string(productMadeBy(maker).quantity); }

class OldInputs {
  public:
    OldInputs(IPlatform& platform, const RunSettings& settings,
              std::vector<std::string>* unreadable)
        : files_(platform.files()),
          settings_(settings),
          unreadable_(unreadable),
          workspace_(platform.rasters().openFromFolder(settings.OutputWorkspace)) {}

    std::vector<std::string> of(const std::string& step) {
        const StepInputs inputs = inputsOf(settings_, step);
        for (const StepInputs::Source& source : inputs.sources) lookAt(source);
        for (const StepInputs::Copy& copy : inputs.copies) lookAt(copy);
        return sentences_;
    }

  private:
    void lookAt(const StepInputs::Source& source) {
        const auto run = lastRunOf(source.maker);
        if (!run) return;
        const std::string title = titleOf(source.maker);
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
                tell("The last run of " + title + " read " + titleOf(step) +
                     " of an earlier run than the last");
            }
        }
    }

    // The step's last run, nothing when none is noted or its note cannot be read, which is told.
    std::optional<StepRecord> lastRunOf(const std::string& step) {
        try {
            return lastRun(files_, settings_.OutputWorkspace, step);
        } catch (const PlatformError& e) {
            const std::string text = std::string(e.what()) +
                                     ": it cannot be told what the last run of " + titleOf(step) +
                                     " made; run that step again";
            tell(text);
            if (unreadable_) unreadable_->push_back(text);
            return std::nullopt;
        }
    }

    void lookAt(const StepInputs::Copy& copy) {
        try {
            compare(copy);
        } catch (const PlatformError&) {
            return;  // whoever reads the grid says so
        }
    }

    void compare(const StepInputs::Copy& copy) {
        if (!isOutdated(*workspace_, copy)) return;
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
    std::vector<std::string>* unreadable_;
    std::unique_ptr<IRasterWorkspace> workspace_;
    std::vector<std::string> sentences_;
};

}  // namespace

bool isOutdated(const IRasterWorkspace& workspace, const StepInputs::Copy& copy) {
    if (!workspace.exists(copy.made) || !workspace.exists(copy.read)) return false;
    const auto made = workspace.openRasterDataset(copy.made);
    const auto read = workspace.openRasterDataset(copy.read);
    // Times alone do not say it: whoever copies a folder may turn them round.
    return read->modified() < made->modified() &&
           !sameValues(*made->createDefaultRaster(), *read->createDefaultRaster());
}

std::vector<std::string> oldInputs(IPlatform& platform, const RunSettings& settings,
                                   const std::string& step, std::vector<std::string>* unreadable) {
    if (!platform.files().folderExists(settings.OutputWorkspace)) return {};
    return OldInputs(platform, settings, unreadable).of(step);
}

}  // namespace velmora
