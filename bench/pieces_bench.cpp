// SPDX-License-Identifier: MIT
// Single operations at 1,000,000 cells.
#include <benchmark/benchmark.h>

#include <algorithm>

#include "bench/big_basin.h"
#include "gis/grid_tiles.h"
#include "platform/platform.h"
#include "refet/refet_pass.h"
#include "refet/work_database.h"

namespace velmora::bench {
namespace {

constexpr int kSide = 1000;

struct Scene {
    platform::Platform platform;
    std::string folder = (std::filesystem::temp_directory_path() / "velmora-bench-pieces").string();
    GridGeometry geometry{kSide, kSide, 300000, 4300000, kCell, ""};
    std::unique_ptr<IRasterWorkspace> workspace;

    Scene() {
        std::filesystem::create_directories(folder);
        workspace = platform.rasters().openFromFolder(folder);
    }
    std::vector<Sample> samples() const {
        std::mt19937 random(7);
        std::uniform_real_distribution<double> share(0.02, 0.98);
        std::vector<Sample> all;
        for (int i = 0; i < kStations; ++i) {
            all.push_back({{geometry.xMin + kSide * kCell * share(random),
                            geometry.yMax - kSide * kCell * share(random)},
                           share(random)});
        }
        return all;
    }
    void fill(CellTable& table) const {
        table.createRecords({0, 0, geometry.columns, geometry.rows});
        const std::pair<CellField, double> values[] = {
            {CellField::Latitude, 40}, {CellField::Elevation, 1500}, {CellField::TM, 28},
            {CellField::TN, 12},       {CellField::TD, 7},           {CellField::SR, 24},
            {CellField::WS, 2.1},      {CellField::GG, 0.1},         {CellField::RefET, 0}};
        for (const auto& [field, value] : values) {
            std::size_t k = 0;
            for (double& v : table.writable(field))
                v = value + 1e-3 * static_cast<double>(k++ % 997);
        }
    }
};

template <class Operation>
void perCell(benchmark::State& state, Operation operation) {
    for (auto _ : state) operation();
    state.counters["cells/s"] =
        benchmark::Counter(1e6, benchmark::Counter::kIsIterationInvariantRate);
}

void saveInterpolation(benchmark::State& state) {
    Scene scene;
    perCell(state, [&] {
        const auto op = scene.platform.analysis().interpolation();
        op->environment().SetCellSize(EnvironmentSetting::explicitValue, kCell);
        op->environment().SetExtent(EnvironmentSetting::explicitValue, scene.geometry.extent(), "");
        scene.workspace->save(
            std::array{RasterToSave{"idw", op->IDW(scene.samples(), 2, 12), "GRID"}});
    });
}
BENCHMARK(saveInterpolation)->Unit(benchmark::kMillisecond)->UseRealTime();

void saveConstant(benchmark::State& state) {
    Scene scene;
    perCell(state, [&] {
        const auto raster = scene.platform.analysis().constant(scene.geometry, 1);
        scene.workspace->save(std::array{RasterToSave{"constant", raster, "GRID"}});
    });
}
BENCHMARK(saveConstant)->Unit(benchmark::kMillisecond)->UseRealTime();

void readIntoField(benchmark::State& state) {
    Scene scene;
    scene.workspace->save(std::array{
        RasterToSave{"g", scene.platform.analysis().constant(scene.geometry, 1), "GRID"}});
    perCell(state, [&] {
        const auto raster = scene.workspace->openRasterDataset("g")->createDefaultRaster();
        forEachTile(scene.platform.loop(), scene.geometry, [&](const CellBlock& block) {
            CellTable table(block);
            gridIntoField(*raster, table, CellField::TM);
        });
    });
}
BENCHMARK(readIntoField)->Unit(benchmark::kMillisecond)->UseRealTime();

// On one thread, a tile at a time.
void equations(benchmark::State& state) {
    const Scene scene;
    CellTable whole;
    scene.fill(whole);
    CellTable tile({0, 0, kTileColumns, kTileRows});
    for (int f = 0; f < kCellFields; ++f) {
        const auto field = static_cast<CellField>(f);
        const auto from = whole.values(field);
        if (!from.empty()) {
            std::copy_n(from.begin(), tile.rowCount(), tile.writable(field).begin());
        }
    }
    const auto method = static_cast<RefEtMethod>(state.range(0));
    const ElevationParts parts = elevationParts(tile);
    const std::size_t tiles = whole.rowCount() / tile.rowCount();
    perCell(state, [&] {
        for (std::size_t k = 0; k < tiles; ++k) {
            calculateRefEt(tile, parts, method, {16, 7, 2006}, static_cast<double>(kNoData));
        }
    });
}
BENCHMARK(equations)
    ->ArgName("method")
    ->DenseRange(2, 6)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// All rows at hand.
class WholeTable : public IRowSource {
  public:
    explicit WholeTable(const CellTable& table) : table_(table) {}
    std::size_t rowCount() const override { return table_.rowCount(); }
    int columnCount() const override { return kCellFields; }
    std::size_t next(std::size_t first) override { return table_.rowCount() - first; }
    std::span<const double> column(int position) const override {
        return table_.values(static_cast<CellField>(position));
    }

  private:
    const CellTable& table_;
};

void workDatabase(benchmark::State& state) {
    Scene scene;
    CellTable table;
    scene.fill(table);
    WholeTable rows(table);
    perCell(state, [&] { storeWorkDatabase(scene.platform, scene.folder + "/GridOP", rows); });
}
BENCHMARK(workDatabase)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace velmora::bench

BENCHMARK_MAIN();
