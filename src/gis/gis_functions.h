// SPDX-License-Identifier: MIT
// The layer, dataset, table and browser services that the dialogs and model steps share
// (mduGisFunctions and mduAPI).
#pragma once

#include <memory>
#include <string>

#include "gis/application.h"

namespace velmora {

// Full path of the chosen dataset, or "" when the user cancels.
std::string BrowseFeatureDataset(IBrowsers& browsers);
std::string BrowseRasterDataset(IBrowsers& browsers);
std::string BrowseForFolder(IBrowsers& browsers, const std::string& title);
std::string GetLastBrowseLocation(IBrowsers& browsers);

// True when a dataset of that name existed and was deleted. Errors are ignored.
bool DeleteRasterDataset(IRasterWorkspaceFactory& rasters, const std::string& folder,
                         const std::string& name);
bool DeleteFeatureClass(IFeatureWorkspaceFactory& features, const std::string& folder,
                        const std::string& name);

// Gives the layer a stretched renderer from one colour to another.
void ApplyColorRamp(IPrompts& prompts, IRasterLayer& layer, const Rgb& from, const Rgb& to);

// The table, or nothing after "Error in opening table".
std::shared_ptr<ITable> OpenTable(IPlatform& platform, IPrompts& prompts, const std::string& folder,
                                  const std::string& name);
// Adds a table to the focus map and refreshes the contents; nothing happens for no table.
void AddTable(IPrompts& prompts, IMxDocument& document, std::shared_ptr<ITable> table);

}  // namespace velmora
