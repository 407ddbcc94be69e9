// SPDX-License-Identifier: MIT
// Rasters as the steps see them. A raster may be a file, a constant or the result of an operation
// that is evaluated block by block only when somebody reads it: saving many results at once then
// streams every block through the whole chain of operations that makes it.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "gis/grid.h"

namespace velmora {

// Band 0 of a raster. Implement it for a new source of cell values.
class IRaster {
  public:
    virtual ~IRaster() = default;
    virtual const GridGeometry& geometry() const = 0;

    // Writes the block's values row by row; kNoData where there are none. The block lies inside the
    // geometry and `values` has block.cells() elements. May be called from several threads at once.
    // Throws PlatformError when the values cannot be had.
    virtual void read(const CellBlock& block, std::span<float> values) const = 0;
};

using RasterPtr = std::shared_ptr<const IRaster>;

// A raster dataset that lies in a workspace under a name.
class IRasterDataset {
  public:
    virtual ~IRasterDataset() = default;
    virtual std::string path() const = 0;
    virtual RasterPtr createDefaultRaster() const = 0;
    virtual float noDataValue() const = 0;
    // When its values were written, nanoseconds of the file system's clock. Throws PlatformError.
    virtual std::int64_t modified() const = 0;
    // The raster files that its name could stand for too, but that are passed over: full paths.
    virtual std::vector<std::string> passedOver() const = 0;
    virtual void remove() = 0;  // deletes the dataset
};

struct RasterToSave {
    std::string name;  // the dataset's name in the workspace
    RasterPtr raster;
    std::string format;  // "GRID" or "Grid": an ESRI binary grid folder
};

// A folder that holds raster datasets.
class IRasterWorkspace {
  public:
    virtual ~IRasterWorkspace() = default;
    virtual std::string folder() const = 0;

    // Opens the grid folder of that name, else a raster file of that name with an extension.
    // Throws PlatformError when there is none or it cannot be read.
    virtual std::unique_ptr<IRasterDataset> openRasterDataset(const std::string& name) const = 0;
    virtual bool exists(const std::string& name) const = 0;

    // Saves every raster under its name, all in one pass over the blocks. Each dataset is written
    // beside under a temporary name; when all are whole and have reached the disk, each is put in
    // its place in one step, replacing an older one, so that a name always stands for a whole
    // dataset. What is no raster is never replaced. Throws PlatformError.
    virtual void save(std::span<const RasterToSave> rasters) = 0;
};

// Opens raster datasets and workspaces.
class IRasterWorkspaceFactory {
  public:
    virtual ~IRasterWorkspaceFactory() = default;
    virtual std::unique_ptr<IRasterWorkspace> openFromFolder(const std::string& folder) = 0;
    // A raster dataset by its full path, with or without an extension.
    virtual std::unique_ptr<IRasterDataset> openRasterDataset(const std::string& path) = 0;
};

}  // namespace velmora
