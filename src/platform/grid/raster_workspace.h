// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "gis/rasters.h"

namespace velmora::platform {

// Raster datasets in folders: grid folders and files that GDAL opens.
class RasterWorkspaceFactory : public IRasterWorkspaceFactory {
  public:
    RasterWorkspaceFactory();
    std::unique_ptr<IRasterWorkspace> openFromFolder(const std::string& folder) override;
    std::unique_ptr<IRasterDataset> openRasterDataset(const std::string& path) override;
};

}  // namespace velmora::platform
