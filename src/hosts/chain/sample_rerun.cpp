// SPDX-License-Identifier: MIT
#include "hosts/chain/sample_rerun.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <functional>
#include <random>

#include "check/grid_check.h"
#include "crop/kc_maps.h"
#include "gis/errors.h"
#include "gis/text.h"
#include "hosts/chain/silent_application.h"
#include "irrigation/efficiency_map.h"
#include "irrigation/irrigation_database.h"
#include "irrigation/irrigation_inputs.h"
#include "modelling/products.h"
#include "modelling/station_fields.h"
#include "precip/precipitation_run.h"
#include "refet/refet_run.h"
#include "settings/modelling_extent.h"

namespace velmora {

namespace fs = std::filesystem;

namespace {

constexpr int kRows = 16;  // of a band
constexpr double kTolerance = 1e-5;

// A folder of the temporary ones that goes with the object.
class Scratch {
  public:
    Scratch() {
        static int count = 0;
        path_ = fs::temp_directory_path() /
                ("velmora-verify-" + std::to_string(::getpid()) + "-" + std::to_string(++count));
        fs::create_directories(path_ / "output");
    }
    ~Scratch() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    std::string file(const std::string& name) const { return (path_ / name).string(); }

  private:
    fs::path path_;
};

// Whole rows: the latitude of a row is that of its left end.
CellBlock bandIn(const GridGeometry& geometry, std::mt19937_64& random) {
    const int rows = std::min(kRows, geometry.rows);
    const auto free = static_cast<std::uint64_t>(geometry.rows - rows);
    return {0, static_cast<int>(random() % (free + 1)), geometry.columns, rows};
}

std::vector<float> cellsOf(const IRaster& raster, const CellBlock& block) {
    std::vector<float> cells(block.cells());
    raster.read(block, cells);
    return cells;
}

bool equal(float stored, float again, double tolerance) {
    if (stored == again) return true;
    if (stored == kNoData || again == kNoData || tolerance == 0) return false;
    const double scale = std::max(1.0, std::fabs(static_cast<double>(stored)));
    return std::fabs(static_cast<double>(stored) - static_cast<double>(again)) <= tolerance * scale;
}

std::string valueText(float value) {
    return value == kNoData ? std::string("no data") : std::to_string(value);
}

class Sampling {
  public:
    Sampling(IPlatform& platform, const RunSettings& settings, const std::string& step, int bands,
             std::uint64_t seed)
        : platform_(platform),
          settings_(settings),
          bands_(bands),
          random_(seed),
          workspace_(platform.rasters().openFromFolder(settings.OutputWorkspace)) {
        found_.step = step;
    }

    SampledProduct result() {
        try {
            if (found_.step == "refet" || found_.step == "ppt") {
                sampleSurfaces();
            } else if (found_.step == "kc") {
                compareWhole([this](IApplication& application, const RunSettings& again) {
                    makeKc(application, again);
                });
            } else if (found_.step == "eff") {
                compareWhole([](IApplication& application, const RunSettings& again) {
                    makeEfficiency(application, again);
                });
            } else {
                sampleMonths();
            }
        } catch (const PlatformError& e) {
            found_.failure = e.what();
        }
        return std::move(found_);
    }

  private:
    RasterPtr stored(const std::string& name) const {
        return workspace_->openRasterDataset(name)->createDefaultRaster();
    }

    // `there` is where the block's first cell lies in the stored grid.
    void compare(const std::string& name, const IRaster& again, const CellBlock& block,
                 const CellBlock& there, double tolerance) {
        const std::vector<float> now = cellsOf(*stored(name), there);
        const std::vector<float> made = cellsOf(again, block);
        found_.cells += now.size();
        std::size_t different = 0;
        std::size_t first = 0;
        for (std::size_t k = now.size(); k-- > 0;) {
            if (equal(now[k], made[k], tolerance)) continue;
            ++different;
            first = k;
        }
        if (different == 0) return;
        const auto columns = static_cast<std::size_t>(there.columns);
        found_.differences.push_back(
            name + ": " + counted(different, "cell") + " of " + std::to_string(now.size()) +
            " made again differ, at first column " +
            std::to_string(static_cast<std::size_t>(there.column) + first % columns + 1) +
            ", row " + std::to_string(static_cast<std::size_t>(there.row) + first / columns + 1) +
            ": " + valueText(now[first]) + " instead of " + valueText(made[first]));
    }

    std::vector<std::string> gridsOfStep() const {
        std::vector<std::string> names = gridNames(productMadeBy(found_.step).made, settings_);
        std::erase_if(names, [&](const std::string& name) { return !workspace_->exists(name); });
        return names;
    }

    // The settings of the run, for a folder of its own. Stations are copied, as a run stores its
    // working field in their table.
    RunSettings settingsIn(const Scratch& scratch) const {
        RunSettings again = settings_;
        again.OutputWorkspace = scratch.file("output");
        const fs::path stations(settings_.WeatherStations);
        if (sameIgnoringCase(stations.extension().string(), ".shp")) {
            for (const auto& entry : fs::directory_iterator(stations.parent_path())) {
                if (entry.path().stem() != stations.stem() || !entry.is_regular_file()) continue;
                fs::copy_file(entry.path(), scratch.file(entry.path().filename().string()));
            }
            again.WeatherStations = scratch.file(stations.filename().string());
        }
        return again;
    }

    void sampleSurfaces() {
        const GridGeometry geometry = runGeometry(platform_, settings_);
        const std::vector<std::string> names = gridsOfStep();
        for (int band = 0; band < bands_; ++band) {
            const CellBlock there = bandIn(geometry, random_);
            const Scratch scratch;
            RunSettings again = settingsIn(scratch);
            again.ExtentProvider = domainOf(geometry, there, scratch.file("band.shp"));
            if (!runSurfaces(again)) return;
            const auto made = platform_.rasters().openFromFolder(again.OutputWorkspace);
            found_.grids = names.size();
            const CellBlock all{0, 0, there.columns, there.rows};
            for (const std::string& name : names) {
                compare(name, *made->openRasterDataset(name)->createDefaultRaster(), all, there,
                        kTolerance);
            }
        }
    }

    std::string domainOf(const GridGeometry& geometry, const CellBlock& block,
                         const std::string& path) {
        const double left = geometry.xMin + block.column * geometry.cellSize;
        const double top = geometry.yMax - block.row * geometry.cellSize;
        const double right = left + block.columns * geometry.cellSize;
        const double bottom = top - block.rows * geometry.cellSize;
        const std::vector<Point> ring = {
            {left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}};
        platform_.features().createFeatureClass(path, true, geometry.crs,
                                                {{"ID", FieldType::number, 9, 0}}, {{ring, {1.0}}});
        return path;
    }

    // False when what was made depends on what the stations' working field held before.
    bool runSurfaces(const RunSettings& again) {
        SilentApplication application(platform_);
        const bool done = found_.step == "refet" ? ReferenceEtRun(application, again).run()
                                                 : PrecipitationRun(application, again).run();
        if (!done) throw PlatformError(application.firstFailure());
        for (const std::string& text : application.messages()) {
            if (text.find(std::string("field ") + kPrecipitationField + " held") !=
                std::string::npos) {
                found_.notMade = text;
            }
        }
        return found_.notMade.empty();
    }

    void makeKc(IApplication& application, const RunSettings& again) const {
        const std::vector<std::string> names = gridsOfStep();
        if (names.empty()) return;
        makeKcMaps(application, again,
                   {again.LandCover, kCropField, again.KcTable,
                    stored(names.front())->geometry().cellSize});
    }

    static void makeEfficiency(IApplication& application, const RunSettings& again) {
        RunRecord record(application, again, "eff");
        if (!GetLuIntersected(application, again)) throw PlatformError("Table QI failed");
        GetIREF(application, again, irrigationDatabasePath(again));
        makeEfficiencyGrid(application, again, record);
    }

    void compareWhole(const std::function<void(IApplication&, const RunSettings&)>& make) {
        const Scratch scratch;
        const RunSettings again = settingsIn(scratch);
        SilentApplication application(platform_);
        make(application, again);
        if (!application.firstFailure().empty()) throw PlatformError(application.firstFailure());
        const auto made = platform_.rasters().openFromFolder(again.OutputWorkspace);
        for (const std::string& name : gridsOfStep()) {
            ++found_.grids;
            const RasterPtr grid = made->openRasterDataset(name)->createDefaultRaster();
            const GridGeometry& geometry = grid->geometry();
            const GridGeometry now = stored(name)->geometry();
            if (geometry.columns != now.columns || geometry.rows != now.rows) {
                found_.differences.push_back(name + ": made again it has other cells");
                continue;
            }
            const std::size_t before = found_.differences.size();
            for (int row = 0; row < geometry.rows && found_.differences.size() == before; ++row) {
                const CellBlock block{0, row, geometry.columns, 1};
                compare(name, *grid, block, block, 0);
            }
        }
    }

    void sampleMonths() {
        const Product& product = productMadeBy(found_.step);
        for (const int month : settings_.months()) {
            const std::string name = gridName(product.made, settings_, month);
            if (!workspace_->exists(name)) continue;
            std::vector<RasterPtr> inputs;
            for (const Product* source : sourcesOf(product)) {
                inputs.push_back(stored(gridName(source->read, settings_, month)));
            }
            const auto algebra = platform_.analysis().mapAlgebra();
            useInputs(algebra->environment());
            const RasterPtr again = monthOfStep(found_.step, *algebra, inputs);
            if (!again) throw PlatformError("there is no way to make a month of " + found_.step);
            ++found_.grids;
            for (int band = 0; band < bands_; ++band) {
                const CellBlock block = bandIn(again->geometry(), random_);
                compare(name, *again, block, block, 0);
            }
        }
    }

    IPlatform& platform_;
    const RunSettings& settings_;
    int bands_;
    std::mt19937_64 random_;
    std::unique_ptr<IRasterWorkspace> workspace_;
    SampledProduct found_;
};

}  // namespace

SampledProduct rerunSample(IPlatform& platform, const RunSettings& settings,
                           const std::string& step, int bands, std::uint64_t seed) {
    try {
        return Sampling(platform, settings, step, bands, seed).result();
    } catch (const fs::filesystem_error& e) {
        throw PlatformError("Cannot make a sample of " + step + " again: " + e.what());
    }
}

}  // namespace velmora
