// SPDX-License-Identifier: MIT
#include "tests/support/fake_rasters.h"

#include <utility>
#include <vector>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "gis/text.h"

namespace velmora::test {

namespace {

class StoredRaster : public IRaster {
  public:
    StoredRaster(FakeRasters& rasters, std::string path, std::shared_ptr<const Grid> grid)
        : rasters_(rasters), path_(std::move(path)), raster_(*grid) {}
    const GridGeometry& geometry() const override { return raster_.geometry(); }
    void read(const CellBlock& block, std::span<float> values) const override {
        rasters_.reads.pass(path_);
        raster_.read(block, values);
    }

  private:
    FakeRasters& rasters_;
    std::string path_;
    MemoryRaster raster_;
};

class FakeDataset : public IRasterDataset {
  public:
    FakeDataset(FakeRasters& rasters, std::string path)
        : rasters_(rasters), path_(std::move(path)), stored_(rasters.datasets().at(path_)) {}
    std::string path() const override { return path_; }
    RasterPtr createDefaultRaster() const override {
        return std::make_shared<StoredRaster>(rasters_, path_, stored_.grid);
    }
    float noDataValue() const override { return kNoData; }
    std::int64_t modified() const override { return stored_.modified; }
    std::vector<std::string> passedOver() const override { return {}; }
    void remove() override { rasters_.remove(path_); }

  private:
    FakeRasters& rasters_;
    std::string path_;
    FakeRasters::Stored stored_;
};

class FakeWorkspace : public IRasterWorkspace {
  public:
    FakeWorkspace(FakeRasters& rasters, std::string folder)
        : rasters_(rasters), folder_(std::move(folder)) {}
    std::string folder() const override { return folder_; }
    std::unique_ptr<IRasterDataset> openRasterDataset(const std::string& name) const override {
        return rasters_.openRasterDataset(joinedPath(folder_, name));
    }
    bool exists(const std::string& name) const override {
        return rasters_.datasets().contains(joinedPath(folder_, name));
    }
    void save(std::span<const RasterToSave> rasters) override {
        std::map<std::string, std::shared_ptr<const Grid>> grids;
        for (const RasterToSave& one : rasters) {
            grids[joinedPath(folder_, one.name)] =
                std::make_shared<const Grid>(wholeGrid(*one.raster));
        }
        rasters_.store(grids);
    }

  private:
    FakeRasters& rasters_;
    std::string folder_;
};

}  // namespace

std::unique_ptr<IRasterWorkspace> FakeRasters::openFromFolder(const std::string& folder) {
    return std::make_unique<FakeWorkspace>(*this, folder);
}

std::unique_ptr<IRasterDataset> FakeRasters::openRasterDataset(const std::string& path) {
    opens.pass(path);
    if (!datasets_.contains(path)) throw PlatformError("There is no raster dataset " + path);
    return std::make_unique<FakeDataset>(*this, path);
}

void FakeRasters::store(const std::map<std::string, std::shared_ptr<const Grid>>& grids) {
    saves.pass(grids.empty() ? "nothing" : grids.begin()->first);
    ++time_;
    for (const auto& [path, grid] : grids) datasets_[path] = {grid, time_};
}

}  // namespace velmora::test
