// SPDX-License-Identifier: MIT
#include "gis/gis_functions.h"

#include "gis/errors.h"
#include "gis/text.h"

namespace velmora {

namespace {

std::string browseDataset(IBrowsers& browsers, DatasetKind kind, const std::string& title) {
    return browsers.browseDataset(kind, title, GetLastBrowseLocation(browsers), "Open");
}

}  // namespace

std::string BrowseFeatureDataset(IBrowsers& browsers) {
    return browseDataset(browsers, DatasetKind::featureClass, "FeatureDatasets Browser");
}

std::string BrowseRasterDataset(IBrowsers& browsers) {
    return browseDataset(browsers, DatasetKind::raster, "RasterDatasets Browser");
}

std::string BrowseForFolder(IBrowsers& browsers, const std::string& title) {
    return browsers.browseFolder(title);
}

std::string GetLastBrowseLocation(IBrowsers& browsers) {
    try {
        return browsers.lastBrowseLocation();
    } catch (const PlatformError&) {
        return {};
    }
}

bool DeleteRasterDataset(IRasterWorkspaceFactory& rasters, const std::string& folder,
                         const std::string& name) {
    try {
        rasters.openFromFolder(folder)->openRasterDataset(name)->remove();
        return true;
    } catch (const PlatformError&) {
        return false;
    }
}

bool DeleteFeatureClass(IFeatureWorkspaceFactory& features, const std::string& folder,
                        const std::string& name) {
    try {
        return features.deleteFeatureClass(joinedPath(folder, name));
    } catch (const PlatformError&) {
        return false;
    }
}

void ApplyColorRamp(IPrompts& prompts, IRasterLayer& layer, const Rgb& from, const Rgb& to) {
    try {
        layer.setStretchedRenderer({from, to, 1, 256});
    } catch (const PlatformError&) {
        prompts.failure("Error occurs while customizing the ColorRamp",
                        "Error Messages from User Procedures");
    }
}

std::shared_ptr<ITable> OpenTable(IPlatform& platform, IPrompts& prompts, const std::string& folder,
                                  const std::string& name) {
    try {
        return platform.features().openTable(joinedPath(folder, name));
    } catch (const PlatformError&) {
        prompts.failure("Error in opening table");
        return nullptr;
    }
}

void AddTable(IPrompts& prompts, IMxDocument& document, std::shared_ptr<ITable> table) {
    if (!table) return;
    try {
        document.addTable(std::move(table));
        document.refreshContents();
    } catch (const PlatformError&) {
        prompts.failure("Error in Adding table");
    }
}

}  // namespace velmora
