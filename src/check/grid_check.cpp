// SPDX-License-Identifier: MIT
#include "check/grid_check.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <string_view>

#include "crop/crop_et_run.h"
#include "gis/errors.h"
#include "gis/text.h"
#include "irrigation/irrigation_requirement_run.h"
#include "irrigation/net_irrigation_run.h"
#include "modelling/old_results.h"
#include "modelling/products.h"
#include "modelling/step_inputs.h"
#include "modelling/step_record.h"

namespace velmora {

namespace {

constexpr std::size_t kNamed = 3;

// How a step makes a month's grid of its sources' grids, in the order of the product's row.
struct MonthOfStep {
    std::string_view step;
    RasterPtr (*make)(IMapAlgebraOp& algebra, const std::vector<RasterPtr>& inputs);
};

const std::array kMonths = {
    MonthOfStep{"cropet",
                [](IMapAlgebraOp& algebra, const std::vector<RasterPtr>& inputs) {
                    return cropEvapotranspiration(algebra, inputs.at(1), inputs.at(0));
                }},
    MonthOfStep{"nir",
                [](IMapAlgebraOp& algebra, const std::vector<RasterPtr>& inputs) {
                    return netIrrigationRequirement(algebra, inputs.at(0), inputs.at(1));
                }},
    MonthOfStep{"irr", [](IMapAlgebraOp& algebra, const std::vector<RasterPtr>& inputs) {
                    return irrigationRequirement(algebra, inputs.at(0), inputs.at(1), inputs.at(2));
                }}};

std::string firstOf(std::vector<std::string> names) {
    const std::size_t count = names.size();
    names.resize(std::min(kNamed, count));
    std::string text = joinedNames(names);
    if (count > kNamed) text += " and " + std::to_string(count - kNamed) + " more";
    return text + (count == 1 ? " is" : " are");
}

class GridCheck {
  public:
    GridCheck(IPlatform& platform, const RunSettings& settings)
        : platform_(platform), settings_(settings) {}

    std::vector<Finding> run() {
        for (const Product& product : products()) checkStep(product);
        return findings_;
    }

  private:
    void add(Severity severity, const std::string& text) {
        if (!told_.insert(text).second) return;
        findings_.push_back({severity, settings_.OutputWorkspace, {}, {}, text});
    }

    void checkStep(const Product& product) {
        const std::string step(product.maker);
        // A note that cannot be read is an error: run all stops before a step that reads its grids.
        std::vector<std::string> unreadable;
        const std::vector<std::string> old = oldInputs(platform_, settings_, step, &unreadable);
        for (const std::string& text : unreadable) add(Severity::error, text);
        auto texts = old;
        std::ranges::move(passedOverInputs(platform_, settings_, step), std::back_inserter(texts));
        for (const std::string& text : texts) add(Severity::warning, text);
        const auto sources = sourcesOf(product);
        if (sources.empty() || !platform_.files().folderExists(settings_.OutputWorkspace)) return;
        workspace_ = platform_.rasters().openFromFolder(settings_.OutputWorkspace);
        const bool begun = std::ranges::any_of(sources, [&](const Product* source) {
            return missing(source->read).size() < gridNames(source->read, settings_).size();
        });
        if (!begun) return;
        for (const Product* source : sources) checkMissing(*source);
        if (old.empty()) checkMonths(step, sources);  // what is old has to be made anew
    }

    std::vector<std::string> missing(const GridNaming& naming) const {
        std::vector<std::string> names = gridNames(naming, settings_);
        std::erase_if(names, [&](const std::string& name) { return workspace_->exists(name); });
        return names;
    }

    // Grids that a step has yet to make or that wait for being copied; or those of the user's own,
    // of which no run is noted, and among which months are missing.
    void checkMissing(const Product& source) {
        const std::vector<std::string> names = missing(source.read);
        if (names.empty()) return;
        const std::string text = firstOf(names) + " missing, without which later steps fail: ";
        const std::string maker(source.maker);
        const bool someAreThere = names.size() < gridNames(source.read, settings_).size();
        if (source.made != source.read && missing(source.made).empty()) {
            add(Severity::note, text + "velmora run all copies " + namePattern(source.made) +
                                    " to " + namePattern(source.read) +
                                    ", and so does velmora grid copy");
        } else if (someAreThere && !isNoted(maker)) {
            add(Severity::error,
                text + "add them to your own, or make all with velmora run " + maker);
        } else {
            add(someAreThere ? Severity::warning : Severity::note,
                text + "make them with velmora run " + maker);
        }
    }

    bool isNoted(const std::string& step) {
        try {
            return lastRun(platform_.files(), settings_.OutputWorkspace, step).has_value();
        } catch (const PlatformError& e) {
            add(Severity::error, e.what());
            return true;
        }
    }

    // Whether each month can be made of its grids, where all of them are there.
    void checkMonths(const std::string& step, const std::vector<const Product*>& sources) {
        for (const int month : settings_.months()) {
            std::vector<std::string> names;
            for (const Product* source : sources) {
                names.push_back(gridName(source->read, settings_, month));
            }
            const auto isThere = [&](const std::string& name) { return workspace_->exists(name); };
            if (std::ranges::all_of(names, isThere)) checkMonth(step, names);
        }
    }

    void checkMonth(const std::string& step, const std::vector<std::string>& names) {
        try {
            std::vector<RasterPtr> inputs;
            for (const std::string& name : names) {
                inputs.push_back(workspace_->openRasterDataset(name)->createDefaultRaster());
            }
            const auto algebra = platform_.analysis().mapAlgebra();
            useInputs(algebra->environment());
            monthOfStep(step, *algebra, inputs);
        } catch (const PlatformError& e) {
            add(Severity::error, joinedNames(names) + ": " + e.what());
        }
    }

    IPlatform& platform_;
    const RunSettings& settings_;
    std::unique_ptr<IRasterWorkspace> workspace_;
    std::set<std::string> told_;
    std::vector<Finding> findings_;
};

}  // namespace

RasterPtr monthOfStep(const std::string& step, IMapAlgebraOp& algebra,
                      const std::vector<RasterPtr>& inputs) {
    const auto* const month = std::ranges::find(kMonths, step, &MonthOfStep::step);
    return month == kMonths.end() ? nullptr : month->make(algebra, inputs);
}

std::vector<Finding> checkGrids(IPlatform& platform, const RunSettings& settings) {
    return GridCheck(platform, settings).run();
}

}  // namespace velmora
