// SPDX-License-Identifier: MIT
#include "platform/grid/raster_workspace.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <utility>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/gdal_library.h"
#include "platform/files/posix_file.h"
#include "platform/files/run_notes.h"
#include "platform/files/unfinished_file.h"
#include "platform/grid/esri_grid.h"
#include "platform/grid/gdal_raster.h"
#include "platform/grid/raster_formats.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

// The raster files of that name plus an ending, in order of name.
std::vector<fs::path> filesOfName(const fs::path& exact) {
    std::error_code error;
    const fs::path folder = exact.has_parent_path() ? exact.parent_path() : fs::path(".");
    std::vector<fs::path> found;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (entry.path().stem() == exact.filename() && entry.is_regular_file(error) &&
            hasRasterEnding(entry.path().string())) {
            found.push_back(entry.path());
        }
    }
    std::ranges::sort(found);
    return found;
}

// The datasets that a path may mean: the grid folder or file of that very name, else the raster
// files of that name plus an ending.
std::vector<fs::path> candidates(const std::string& path) {
    const fs::path exact(path);
    if (isGridFolder(exact) || isFile(path)) return {exact};
    return filesOfName(exact);
}

// What other programs put beside a dataset to describe its values; it goes with them.
void removeDescriptions(const std::string& dataset) {
    for (const char* extension : {".aux.xml", ".ovr"}) removeTree(dataset + extension);
}

class Dataset : public IRasterDataset {
  public:
    // Of the path that was asked for, which may lack the file's ending.
    Dataset(fs::path path, fs::path asked) : path_(std::move(path)), asked_(std::move(asked)) {
        raster_ = open(path_.string());
    }

    std::string path() const override { return path_.string(); }
    RasterPtr createDefaultRaster() const override { return raster_; }
    float noDataValue() const override { return kNoData; }
    std::int64_t modified() const override {
        const fs::path values = isFolder(path()) ? path_ / "w001001.adf" : path_;
        std::error_code error;
        const auto time = fs::last_write_time(isFile(values.string()) ? values : path_, error);
        if (error)
            throw PlatformError("Cannot look at " + path() + ": " + error.message(),
                                {.file = path()});
        return std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch())
            .count();
    }
    std::vector<std::string> passedOver() const override {
        std::error_code error;
        if (fs::is_regular_file(asked_, error)) return {};
        std::vector<std::string> paths;
        for (const fs::path& file : filesOfName(asked_)) {
            if (file != path_) paths.push_back(file.string());
        }
        return paths;
    }
    void remove() override {
        raster_.reset();
        removeTree(path_.string());
        removeDescriptions(path_.string());
    }

  private:
    static RasterPtr open(const std::string& path) {
        if (isFolder(path)) {
            if (RasterPtr grid = openEsriGrid(path)) return grid;
        }
        return openGdalRaster(path);
    }

    fs::path path_;
    fs::path asked_;
    RasterPtr raster_;
};

// The first candidate that opens; when none does, the failure of the first.
std::unique_ptr<IRasterDataset> openDataset(const std::string& path) {
    requireLocalPath(path);
    PlatformError failure("There is no raster dataset " + path +
                              " (neither a grid folder nor a raster file of that name)",
                          {.file = path});
    bool first = true;
    for (const fs::path& candidate : candidates(path)) {
        try {
            return std::make_unique<Dataset>(candidate, path);
        } catch (const PlatformError& e) {
            if (std::exchange(first, false)) failure = e;
        }
    }
    throw failure;
}

std::unique_ptr<IRasterDataset> openedForReading(const std::string& path) {
    auto dataset = openDataset(path);
    noteRead(dataset->path(), dataset->createDefaultRaster()->geometry().crs);
    return dataset;
}

bool isRasterFile(const std::string& path) {
    try {
        openDataset(path);
        return true;
    } catch (const PlatformError&) {
        return false;
    }
}

// Throws when the name belongs to something that is no raster: it is the user's.
void requireReplaceable(const std::string& path) {
    std::error_code error;
    if (fs::is_directory(path, error) && !isGridFolder(path)) {
        throw PlatformError(
            "The folder " + path + " is no grid, so it is not replaced: move it away",
            {.file = path});
    }
    if (fs::is_regular_file(path, error) && !isRasterFile(path)) {
        throw PlatformError(
            "The file " + path + " is no raster, so it is not replaced: move it away",
            {.file = path});
    }
}

// A raster on its way to its final name.
struct Unfinished {
    UnfinishedFile folder;
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
        return openedForReading(joinedPath(folder_, name));
    }
    bool exists(const std::string& name) const override {
        return !candidates(joinedPath(folder_, name)).empty();
    }

    void save(std::span<const RasterToSave> rasters) override {
        std::vector<Unfinished> unfinished;
        for (const RasterToSave& entry : rasters) unfinished.push_back(begun(entry));
        writeTiles(unfinished);
        parallelFor(unfinished.size(), 1, [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) unfinished[i].writer->finish();
        });
        syncFileSystemOf(folder_);  // no name may stand for what a power cut could lose
        for (std::size_t i = 0; i < rasters.size(); ++i) {
            const std::string target = joinedPath(folder_, rasters[i].name);
            moveInPlace(unfinished[i].folder, target);
            noteWritten(target, unfinished[i].writer->files());
        }
    }

  private:
    Unfinished begun(const RasterToSave& entry) const {
        checkName(entry.name);
        if (!sameIgnoringCase(entry.format, "GRID")) {
            throw PlatformError("The format " + entry.format + " is not known: GRID is");
        }
        const std::string target = joinedPath(folder_, entry.name);
        requireReplaceable(target);
        UnfinishedFile folder(target, Leftovers::left);  // swept when the folder was locked
        auto writer = std::make_unique<EsriGridWriter>(folder.path(), entry.raster->geometry());
        return {std::move(folder), entry.raster, std::move(writer)};
    }

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

    // The new dataset takes the place of the one of that very name. A raster file of the name and
    // an ending is the user's: it stays, and is passed over from now on.
    static void moveInPlace(UnfinishedFile& folder, const std::string& to) {
        requireReplaceable(to);
        folder.finishTree();
        removeDescriptions(to);
    }

    std::string folder_;
};

}  // namespace

RasterWorkspaceFactory::RasterWorkspaceFactory() { initialiseGdal(); }

std::unique_ptr<IRasterWorkspace> RasterWorkspaceFactory::openFromFolder(
    const std::string& folder) {
    if (!fs::is_directory(folder))
        throw PlatformError("There is no folder " + folder, {.file = folder});
    return std::make_unique<Workspace>(folder);
}

std::unique_ptr<IRasterDataset> RasterWorkspaceFactory::openRasterDataset(const std::string& path) {
    return openedForReading(path);
}

}  // namespace velmora::platform
