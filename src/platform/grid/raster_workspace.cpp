// SPDX-License-Identifier: MIT
#include "platform/grid/raster_workspace.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <utility>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/analysis/parallel_loop.h"
#include "platform/files/posix_file.h"
#include "platform/grid/esri_grid.h"
#include "platform/grid/gdal_raster.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

bool isGridFolder(const fs::path& path) { return fs::is_regular_file(path / "hdr.adf"); }

// Files that lie beside a raster and describe it, and vectors of the same name.
bool isRasterFile(const fs::path& path) {
    static const std::vector<std::string> others = {".xml", ".prj", ".ovr", ".tfw", ".aux", ".shp",
                                                    ".shx", ".dbf", ".cpg", ".qix", ".qml", ".png",
                                                    ".csv", ".txt", ".inf", ".mdb", ".qmd", ".sbn",
                                                    ".sbx", ".hdr", ".stx", ".clr", ".rrd", ".ige"};
    const std::string extension = path.extension().string();
    return !extension.empty() && fs::is_regular_file(path) &&
           std::none_of(others.begin(), others.end(),
                        [&](const std::string& o) { return sameIgnoringCase(o, extension); });
}

// The dataset that a path means: the grid folder or file of that very name, else the first raster
// file (in order of name) of that name plus an extension; empty when there is none.
fs::path resolved(const std::string& path) {
    fs::path exact(path);
    if (isGridFolder(exact) || fs::is_regular_file(exact)) return exact;
    const fs::path folder = exact.has_parent_path() ? exact.parent_path() : fs::path(".");
    std::vector<fs::path> found;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (entry.path().stem() == exact.filename() && isRasterFile(entry.path())) {
            found.push_back(entry.path());
        }
    }
    if (found.empty()) return {};
    return *std::min_element(found.begin(), found.end());
}

// What other programs put beside a dataset to describe its values; it goes with them.
void removeDescriptions(const std::string& dataset) {
    for (const char* extension : {".aux.xml", ".ovr"}) removeTree(dataset + extension);
}

class Dataset : public IRasterDataset {
  public:
    explicit Dataset(fs::path path) : path_(std::move(path)) { raster_ = open(path_.string()); }

    std::string path() const override { return path_.string(); }
    RasterPtr createDefaultRaster() const override { return raster_; }
    float noDataValue() const override { return kNoData; }
    std::int64_t modified() const override {
        const fs::path values = fs::is_directory(path_) ? path_ / "w001001.adf" : path_;
        std::error_code error;
        const auto time = fs::last_write_time(fs::exists(values) ? values : path_, error);
        if (error) throw PlatformError("Cannot look at " + path() + ": " + error.message());
        return std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch())
            .count();
    }
    void remove() override {
        raster_.reset();
        removeTree(path_.string());
        removeDescriptions(path_.string());
    }

  private:
    static RasterPtr open(const std::string& path) {
        if (fs::is_directory(path)) {
            if (RasterPtr grid = openEsriGrid(path)) return grid;
        }
        return openGdalRaster(path);
    }

    fs::path path_;
    RasterPtr raster_;
};

std::unique_ptr<IRasterDataset> openDataset(const std::string& path) {
    const fs::path found = resolved(path);
    if (found.empty()) {
        throw PlatformError("There is no raster dataset " + path +
                            " (neither a grid folder nor a raster file of that name)");
    }
    return std::make_unique<Dataset>(found);
}

// A raster on its way to its final name.
struct Unfinished {
    std::string path;
    RasterPtr raster;
    std::unique_ptr<EsriGridWriter> writer;
};

void checkName(const std::string& name) {
    if (name.empty() || name.find('/') != std::string::npos || name.starts_with('.')) {
        throw PlatformError("\"" + name + "\" is no name for a dataset");
    }
}

class Workspace : public IRasterWorkspace {
  public:
    explicit Workspace(std::string folder) : folder_(std::move(folder)) {}

    std::string folder() const override { return folder_; }
    std::unique_ptr<IRasterDataset> openRasterDataset(const std::string& name) const override {
        return openDataset(joinedPath(folder_, name));
    }
    bool exists(const std::string& name) const override {
        return !resolved(joinedPath(folder_, name)).empty();
    }

    void save(std::span<const RasterToSave> rasters) override {
        std::vector<Unfinished> unfinished;
        try {
            for (const RasterToSave& entry : rasters) {
                checkName(entry.name);
                if (!sameIgnoringCase(entry.format, "GRID")) {
                    throw PlatformError("The format " + entry.format + " is not known: GRID is");
                }
                const std::string path = unfinishedPath(joinedPath(folder_, entry.name));
                unfinished.push_back({path, entry.raster, nullptr});
                unfinished.back().writer =
                    std::make_unique<EsriGridWriter>(path, entry.raster->geometry());
            }
            writeTiles(unfinished);
            parallelFor(unfinished.size(), 1, [&](std::size_t begin, std::size_t end) {
                for (std::size_t i = begin; i < end; ++i) unfinished[i].writer->finish();
            });
        } catch (...) {
            for (const Unfinished& entry : unfinished) removeTree(entry.path);
            throw;
        }
        for (std::size_t i = 0; i < rasters.size(); ++i) {
            moveInPlace(unfinished[i].path, joinedPath(folder_, rasters[i].name));
        }
    }

  private:
    // Rasters of one shape go through their tiles together, so that what they share is made once.
    static void writeTiles(std::vector<Unfinished>& entries) {
        std::map<std::pair<int, int>, std::vector<Unfinished*>> byShape;
        for (Unfinished& entry : entries) {
            const auto& geometry = entry.raster->geometry();
            byShape[{geometry.columns, geometry.rows}].push_back(&entry);
        }
        for (auto& entry : byShape) {
            const std::vector<Unfinished*>& group = entry.second;
            const GridTiles tiles(group.front()->raster->geometry());
            parallelFor(
                tiles.count(), static_cast<std::size_t>(tiles.across),
                [&](std::size_t begin, std::size_t end) { writeTiles(group, tiles, begin, end); });
        }
    }

    static void writeTiles(const std::vector<Unfinished*>& group, const GridTiles& tiles,
                           std::size_t begin, std::size_t end) {
        std::vector<float> values;
        for (std::size_t tile = begin; tile < end; ++tile) {
            for (const Unfinished* entry : group) {
                const CellBlock block = tiles.block(tile, entry->raster->geometry());
                values.resize(block.cells());
                entry->raster->read(block, values);
                entry->writer->writeTile(tile, values);
            }
        }
    }

    // The old dataset steps aside, the new one takes its name, the old one goes.
    static void moveInPlace(const std::string& from, const std::string& to) {
        const std::string aside = unfinishedPath(to + ".old");
        std::error_code error;
        const fs::path old = resolved(to);
        if (!old.empty() && fs::is_directory(old)) {
            fs::rename(old, aside, error);
        } else if (fs::is_directory(to)) {
            throw PlatformError("The folder " + to +
                                " is no grid, so it is not replaced: move it away");
        } else if (!old.empty()) {
            Dataset(old).remove();
        }
        if (!error) fs::rename(from, to, error);
        if (!error) removeDescriptions(to);
        removeTree(aside);
        if (error) throw PlatformError("Cannot replace " + to + ": " + error.message());
    }

    std::string folder_;
};

}  // namespace

RasterWorkspaceFactory::RasterWorkspaceFactory() { initialiseGdal(); }

std::unique_ptr<IRasterWorkspace> RasterWorkspaceFactory::openFromFolder(
    const std::string& folder) {
    if (!fs::is_directory(folder)) throw PlatformError("There is no folder " + folder);
    return std::make_unique<Workspace>(folder);
}

std::unique_ptr<IRasterDataset> RasterWorkspaceFactory::openRasterDataset(const std::string& path) {
    return openDataset(path);
}

}  // namespace velmora::platform
