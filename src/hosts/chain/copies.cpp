// SPDX-License-Identifier: MIT
#include "hosts/chain/copies.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "gis/errors.h"
#include "gis/text.h"
#include "gis/working_folder.h"
#include "modelling/old_results.h"

namespace velmora {

namespace {

using State = GridCopy::State;

// Steps make grids, so a raster file of that name is the user's.
bool isUsersFile(const IRasterWorkspace& workspace, const std::string& name) {
    return workspace.openRasterDataset(name)->path() != joinedPath(workspace.folder(), name);
}

State stateOf(const IRasterWorkspace& workspace, const StepInputs::Copy& names, bool inThisJob) {
    if (!workspace.exists(names.made)) return State::nothing;
    if (!workspace.exists(names.read)) return State::missing;
    try {
        if (isUsersFile(workspace, names.read)) return State::standing;
        if (inThisJob) return State::renewed;
        return isOutdated(workspace, names) ? State::outdated : State::standing;
    } catch (const PlatformError&) {
        return State::standing;  // whoever reads the grid says what is wrong with it
    }
}

}  // namespace

std::vector<GridCopy> copiesOfProduct(IPlatform& platform, const RunSettings& settings,
                                      const Product& product, bool inThisJob) {
    std::vector<GridCopy> copies;
    if (!platform.files().folderExists(settings.OutputWorkspace)) return copies;
    const auto workspace = platform.rasters().openFromFolder(settings.OutputWorkspace);
    for (const StepInputs::Copy& names : copiesOf(product, settings)) {
        copies.push_back({names, stateOf(*workspace, names, inThisJob)});
    }
    return copies;
}

std::vector<GridCopy> copiesReadBy(IPlatform& platform, const RunSettings& settings,
                                   const std::string& step,
                                   const std::vector<std::string>& makers) {
    std::vector<GridCopy> copies;
    for (const Product* source : sourcesOf(productMadeBy(step))) {
        const bool inThisJob = std::ranges::find(makers, source->maker) != makers.end();
        std::ranges::move(copiesOfProduct(platform, settings, *source, inThisJob),
                          std::back_inserter(copies));
    }
    return copies;
}

std::string copyToName(IPlatform& platform, const std::string& folder,
                       const StepInputs::Copy& names) {
    const auto workspace = platform.rasters().openFromFolder(folder);
    WorkingFolder working(platform.files(), folder);
    const auto source = workspace->openRasterDataset(names.made);
    workspace->save(std::array{RasterToSave{names.read, source->createDefaultRaster(), "GRID"}});
    working.settle();
    return source->path();
}

}  // namespace velmora
