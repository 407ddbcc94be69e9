// SPDX-License-Identifier: MIT
#include "modelling/step_inputs.h"

#include <algorithm>
#include <iterator>

#include "gis/errors.h"
#include "gis/raster_compare.h"

namespace velmora {

StepInputs inputsOf(const RunSettings& settings, const std::string& step) {
    StepInputs inputs;
    for (const Product* source : sourcesOf(productMadeBy(step))) {
        inputs.sources.push_back({std::string(source->maker), gridNames(source->made, settings)});
        for (const StepInputs::Copy& copy : copiesOf(*source, settings)) {
            inputs.copies.push_back(copy);
        }
    }
    return inputs;
}

std::vector<StepInputs::Copy> copiesOf(const Product& product, const RunSettings& settings) {
    std::vector<StepInputs::Copy> copies;
    if (product.made == product.read) return copies;
    const std::vector<std::string> made = gridNames(product.made, settings);
    const std::vector<std::string> read = gridNames(product.read, settings);
    for (std::size_t i = 0; i < made.size(); ++i) copies.push_back({made[i], read[i]});
    return copies;
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
