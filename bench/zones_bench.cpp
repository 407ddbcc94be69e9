// SPDX-License-Identifier: MIT
// Polygons and zones at 10,000,000 cells, for bench/peers/zones.sh:
//   bench_zones make FOLDER                 writes fields.shp (2,000 polygons), zones.shp (30) and
//   a
//                                           grid of values, also as values.tif
//   bench_zones rasterise FOLDER THREADS    fields to a grid
//   bench_zones zonal FOLDER THREADS        the grid's statistics by zone; prints the first mean
//   bench_zones months FOLDER POLYGONS      twelve months of Kc maps over so many polygons, of
//   which
//                                           the months keep four different sets; prints passes and
//                                           seconds
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "gis/joins.h"
#include "gis/memory_raster.h"
#include "gis/month_names.h"
#include "platform/analysis/conversion.h"
#include "platform/analysis/zonal.h"
#include "platform/grid/gdal_raster.h"
#include "platform/platform.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::bench {
namespace {

constexpr int kColumns = 4000;
constexpr int kRows = 2500;
constexpr double kCell = 100;

class Scene {
  public:
    explicit Scene(std::string folder)
        : folder_(std::move(folder)),
          cells_{kColumns, kRows, 300000,
                 4500000,  kCell, platform_.spatialReferences().createProjected(26912)},
          workspace_(platform_.rasters().openFromFolder(folder_)) {}

    void make() {
        makePolygons("fields", 2000, 12, "KC");
        makePolygons("zones", 30, 40, "ZONE");
        Grid grid(cells_);
        for (int r = 0; r < kRows; ++r) {
            for (int c = 0; c < kColumns; ++c) {
                grid.at(c, r) = static_cast<float>(5 + std::sin(0.01 * c) + 0.001 * r);
            }
        }
        const auto raster = std::make_shared<MemoryRaster>(std::move(grid));
        workspace_->save(std::array{RasterToSave{"values", raster, "GRID"}});
        platform::exportGeoTiff(*raster, folder_ + "/values.tif");
    }

    void rasterise() {
        const auto layer = joined("fields");
        platform::ConversionOp op;
        useCells(op.environment(), cells_);
        op.ToRasterDataset({*layer, "", "fields.KC"}, "GRID", *workspace_, "fields");
    }

    double zonal() {
        const auto zones = platform_.features().openFeatureClass(folder_ + "/zones.shp");
        const auto table = platform::ZonalOp().ZonalStatisticsAsTable(
            zones, "ZONE", workspace_->openRasterDataset("values")->createDefaultRaster(), true);
        return std::get<double>(table->value(0, "Mean"));
    }

    void months(int polygons) {
        makePolygons("many", polygons, 6, "KC");
        makeKcTable();
        const auto layer = platform_.memoryRelationships().open(
            {"JoinTable", platform_.features().openTable(folder_ + "/kc.dbf"), "CROP",
             platform_.features().openFeatureClass(folder_ + "/many.shp"), "KC", "", ""});
        platform::ConversionOp op;
        useCells(op.environment(), cells_);
        const auto start = std::chrono::steady_clock::now();
        for (int month = 1; month <= 12; ++month) {
            const std::string field = "kc.Kc_" + GetMonthName(month);
            op.ToRasterDataset({*layer, "[" + field + "] <> 0", field}, "GRID", *workspace_,
                               "Kc_" + GetMonthName(month));
        }
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        std::printf("%d polygons, 12 months: %d passes over the polygons, %.2f s\n", polygons,
                    op.passes(), took.count());
    }

  private:
    // Star-shaped polygons all over the domain, numbered from 1, sized to cover about half of it.
    void makePolygons(const std::string& name, int count, int corners, const std::string& field) {
        std::mt19937 random(11);
        std::uniform_real_distribution<double> share(0, 1);
        const double radius = std::sqrt(kColumns * kRows * kCell * kCell * 0.5 / count / 3.14159);
        std::vector<NewFeature> features;
        for (int i = 0; i < count; ++i) {
            const double x = cells_.xMin + share(random) * kColumns * kCell;
            const double y = cells_.yMax - share(random) * kRows * kCell;
            NewFeature feature;
            for (int k = 0; k < corners; ++k) {
                const double angle = 6.2831853 * k / corners;
                const double r = radius * (0.6 + 0.8 * share(random));
                feature.ring.push_back({x + r * std::cos(angle), y + r * std::sin(angle)});
            }
            feature.ring.push_back(feature.ring.front());
            feature.values = {static_cast<double>(i % 20 + 1)};
            if (field == "ZONE") feature.values = {static_cast<double>(i + 1)};
            features.push_back(std::move(feature));
        }
        platform_.features().createFeatureClass(folder_ + "/" + name + ".shp", true, cells_.crs,
                                                {{field, FieldType::integer, 6, 0}}, features);
    }

    // Twenty crops; a quarter grows all year, the others begin in March, May and July.
    void makeKcTable() {
        std::vector<Field> fields = {{"CROP", FieldType::integer, 6, 0}};
        for (int m = 1; m <= 12; ++m) {
            fields.push_back({"Kc_" + GetMonthName(m), FieldType::number, 8, 3});
        }
        std::vector<std::vector<FieldValue>> records;
        for (int crop = 1; crop <= 20; ++crop) {
            std::vector<FieldValue> record = {static_cast<double>(crop)};
            for (int m = 1; m <= 12; ++m) {
                record.emplace_back(m > 2 * (crop % 4) ? 0.3 + 0.01 * crop + 0.05 * m : 0.0);
            }
            records.push_back(record);
        }
        platform_.features().createTable(folder_ + "/kc.dbf", fields, records);
    }

    // A join of a layer with itself: its own fields are all that is used.
    std::unique_ptr<IJoinedLayer> joined(const std::string& name) {
        const auto layer = platform_.features().openFeatureClass(folder_ + "/" + name + ".shp");
        const std::string field = layer->fields().front().name;
        return platform_.memoryRelationships().open(
            {"JoinTable", layer, field, layer, field, "", ""});
    }

    platform::Platform platform_;
    std::string folder_;
    GridGeometry cells_;
    std::unique_ptr<IRasterWorkspace> workspace_;
};

}  // namespace
}  // namespace velmora::bench

int main(int argc, char** argv) {
    if (argc < 3) {
        std::puts("usage: bench_zones make|rasterise|zonal|months FOLDER [THREADS or POLYGONS]");
        return 2;
    }
    const std::string what = argv[1];
    const int number = argc > 3 ? std::stoi(argv[3]) : 0;
    if (what != "months") velmora::platform::useThreads(number);
    velmora::bench::Scene scene(argv[2]);
    if (what == "make") scene.make();
    if (what == "rasterise") scene.rasterise();
    if (what == "zonal") std::printf("%.9g\n", scene.zonal());
    if (what == "months") scene.months(number > 0 ? number : 200000);
    return 0;
}
