// SPDX-License-Identifier: MIT
#include "modelling/step_inputs.h"

#include <algorithm>
#include <iterator>

#include "gis/errors.h"
#include "gis/month_names.h"
#include "gis/raster_compare.h"

namespace velmora {

namespace {

std::vector<std::string> monthly(const RunSettings& settings, const std::string& prefix,
                                 const std::string& tag) {
    std::vector<std::string> names;
    for (const int month : settings.months()) names.push_back(prefix + GetMonthName(month) + tag);
    return names;
}

}  // namespace

StepInputs inputsOf(const RunSettings& settings, const std::string& step) {
    StepInputs inputs;
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

std::vector<std::string> namesReadBy(const RunSettings& settings, const std::string& step) {
    const StepInputs inputs = inputsOf(settings, step);
    std::vector<std::string> names;
    for (const StepInputs::Source& source : inputs.sources) {
        for (const std::string& grid : source.grids) {
            const auto copy = std::ranges::find(inputs.copies, grid, &StepInputs::Copy::made);
            names.push_back(copy == inputs.copies.end() ? grid : copy->read);
        }
    }
    return names;
}

std::vector<std::string> passedOverInputs(IPlatform& platform, const RunSettings& settings,
                                          const std::string& step) {
    std::vector<std::string> texts;
    if (!platform.files().folderExists(settings.OutputWorkspace)) return texts;
    const auto workspace = platform.rasters().openFromFolder(settings.OutputWorkspace);
    for (const std::string& name : namesReadBy(settings, step)) {
        try {
            const auto dataset = workspace->openRasterDataset(name);
            std::ranges::move(passedOverTexts(platform.rasters(), *dataset),
                              std::back_inserter(texts));
        } catch (const PlatformError&) {
            continue;
        }
    }
    return texts;
}

}  // namespace velmora
