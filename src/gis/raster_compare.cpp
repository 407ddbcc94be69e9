// SPDX-License-Identifier: MIT
#include "gis/raster_compare.h"

#include "gis/errors.h"
#include "gis/text.h"

namespace velmora {

namespace {

bool holdsSomethingElse(IRasterWorkspaceFactory& rasters, const std::string& file,
                        const IRaster& raster) {
    try {
        return !sameValues(raster, *rasters.openRasterDataset(file)->createDefaultRaster());
    } catch (const PlatformError&) {
        return false;
    }
}

}  // namespace

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

std::vector<std::string> passedOverTexts(IRasterWorkspaceFactory& rasters,
                                         const IRasterDataset& dataset) {
    std::vector<std::string> texts;
    for (const std::string& file : dataset.passedOver()) {
        if (!holdsSomethingElse(rasters, file, *dataset.createDefaultRaster())) continue;
        texts.push_back(dataset.path() + " is read, and not " + file +
                        " of the same name, which differs from it: delete or rename the one that "
                        "is not meant");
    }
    return texts;
}

void tellPassedOver(IPrompts& prompts, IRasterWorkspaceFactory& rasters,
                    const IRasterDataset& dataset) {
    for (const std::string& text : passedOverTexts(rasters, dataset)) prompts.notice(text);
}

}  // namespace velmora
