// SPDX-License-Identifier: MIT
#include <array>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "gis/errors.h"
#include "gis/text.h"
#include "gis/working_folder.h"
#include "hosts/cli/commands.h"
#include "hosts/results/grid_picture.h"
#include "hosts/results/grid_statistics.h"
#include "platform/platform.h"
#include "settings/stored_settings.h"

namespace velmora::cli {

namespace {

// The output folder of the settings, or "" when there are none.
std::string outputFolder(const Session& session, const IFileSystem& files) {
    const auto settings = storedSettings(files, session.settingsFolder);
    return settings ? settings->OutputWorkspace : std::string();
}

bool isName(const std::string& dataset) { return dataset.find('/') == std::string::npos; }

// A dataset by its path, or by its name in the output folder.
std::unique_ptr<IRasterDataset> opened(const Session& session, platform::Platform& platform,
                                       const std::string& dataset) {
    if (isName(dataset)) {
        const std::string folder = outputFolder(session, platform.files());
        if (!folder.empty() && platform.files().folderExists(folder)) {
            const auto workspace = platform.rasters().openFromFolder(folder);
            if (workspace->exists(dataset)) return workspace->openRasterDataset(dataset);
        }
    }
    return platform.rasters().openRasterDataset(dataset);
}

nlohmann::ordered_json geometryJson(const IRasterDataset& dataset, platform::Platform& platform) {
    const auto& g = dataset.createDefaultRaster()->geometry();
    const Envelope e = g.extent();
    return {{"path", dataset.path()},
            {"columns", g.columns},
            {"rows", g.rows},
            {"cellSize", g.cellSize},
            {"xMin", e.xMin},
            {"yMin", e.yMin},
            {"xMax", e.xMax},
            {"yMax", e.yMax},
            {"crs", g.crs.empty() ? "unknown" : platform.spatialReferences().name(g.crs)},
            {"noData", static_cast<double>(dataset.noDataValue())}};
}

void printPairs(const nlohmann::ordered_json& object) {
    for (const auto& [key, value] : object.items()) {
        print("{:<10}{}\n", key, value.is_string() ? value.get<std::string>() : value.dump());
    }
}

void printStatisticsJson(const std::vector<std::string>& datasets,
                         const std::vector<GridStatistics>& all) {
    auto list = nlohmann::ordered_json::array();
    for (std::size_t i = 0; i < all.size(); ++i) {
        const GridStatistics& s = all[i];
        nlohmann::ordered_json entry = {{"dataset", datasets[i]}, {"cells", s.cells}};
        if (s.cells > 0) {
            entry.update({{"minimum", s.minimum},
                          {"maximum", s.maximum},
                          {"mean", s.mean},
                          {"deviation", s.deviation}});
        }
        list.push_back(entry);
    }
    printJson(list);
}

void printStatistics(const std::vector<std::string>& datasets,
                     const std::vector<GridStatistics>& all) {
    print("{:<20}{:>12}{:>14}{:>14}{:>14}{:>14}\n", "dataset", "cells", "minimum", "maximum",
          "mean", "deviation");
    for (std::size_t i = 0; i < all.size(); ++i) {
        const GridStatistics& s = all[i];
        const std::string name = oneLine(fileName(datasets[i]));
        if (s.cells == 0) {
            print("{:<20}{:>12}  no cell has data\n", name, 0);
        } else {
            print("{:<20}{:>12}{:>14.6g}{:>14.6g}{:>14.6g}{:>14.6g}\n", name, s.cells, s.minimum,
                  s.maximum, s.mean, s.deviation);
        }
    }
}

}  // namespace

int gridInfo(const Session& session, const std::string& dataset) {
    platform::Platform platform;
    const auto object = geometryJson(*opened(session, platform, dataset), platform);
    if (session.json) {
        printJson(object);
    } else {
        printPairs(object);
    }
    return kDone;
}

int gridStatistics(const Session& session, const std::vector<std::string>& datasets) {
    platform::Platform platform;
    std::vector<GridStatistics> all;  // nothing is printed before every dataset has been read
    for (const std::string& name : datasets) {
        all.push_back(statisticsOf(*opened(session, platform, name)->createDefaultRaster()));
    }
    if (session.json) {
        printStatisticsJson(datasets, all);
    } else {
        printStatistics(datasets, all);
    }
    return kDone;
}

int gridCopy(const Session& session, const std::string& from, const std::string& to) {
    platform::Platform platform;
    const auto source = opened(session, platform, from);
    const std::string folder =
        isName(to) ? parentFolderName(std::filesystem::absolute(source->path()).string())
                   : parentFolderName(std::filesystem::absolute(to).string());
    const auto workspace = platform.rasters().openFromFolder(folder);
    WorkingFolder working(platform.files(), folder);
    workspace->save(std::array{RasterToSave{fileName(to), source->createDefaultRaster(), "GRID"}});
    working.settle();
    sayDone(session, "{} is copied to {}\n", source->path(), joinedPath(folder, fileName(to)));
    return kDone;
}

int gridExport(const Session& session, const std::string& dataset, const std::string& file) {
    platform::Platform platform;
    platform::exportGeoTiff(*opened(session, platform, dataset)->createDefaultRaster(), file);
    sayDone(session, "{} is written\n", file);
    return kDone;
}

int gridPicture(const Session& session, const std::string& dataset, const std::string& file,
                const std::string& title) {
    platform::Platform platform;
    const auto source = opened(session, platform, dataset);
    const std::string name = fileName(dataset);
    drawGridPicture(platform.files(), *source->createDefaultRaster(), rampOf(name),
                    title.empty() ? name : title, file);
    sayDone(session, "{} is written\n", file);
    return kDone;
}

}  // namespace velmora::cli
