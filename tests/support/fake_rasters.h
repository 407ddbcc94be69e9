// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "gis/rasters.h"
#include "tests/support/failure_point.h"

namespace velmora::test {

// Raster datasets in memory, by their paths. A workspace is any folder, and each name stands for
// one dataset: no raster file has an ending, and none is passed over.
class FakeRasters : public IRasterWorkspaceFactory {
  public:
    struct Stored {
        std::shared_ptr<const Grid> grid;
        std::int64_t modified = 0;
    };

    std::unique_ptr<IRasterWorkspace> openFromFolder(const std::string& folder) override;
    std::unique_ptr<IRasterDataset> openRasterDataset(const std::string& path) override;

    // Keeps whole grids under their paths, all or none of them.
    void store(const std::map<std::string, std::shared_ptr<const Grid>>& grids);
    void remove(const std::string& path) { datasets_.erase(path); }
    const std::map<std::string, Stored>& datasets() const { return datasets_; }

    FailurePoint saves{"Cannot save the raster "};  // of any number of rasters at once
    FailurePoint opens{"Cannot open the raster "};
    FailurePoint reads{"Cannot read the raster "};  // of a block of cells

  private:
    std::map<std::string, Stored> datasets_;
    std::int64_t time_ = 0;  // goes on with every save
};

}  // namespace velmora::test
