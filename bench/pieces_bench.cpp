// SPDX-License-Identifier: MIT
// Single operations at 1,000,000 cells.
#include <benchmark/benchmark.h>

#include "bench/big_basin.h"
#include "platform/platform.h"
#include "refet/cell_transfer.h"
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
    void fill(CellTable& table) {
        table.createRecords(geometry.cells());
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
    CellTable table;
    table.createRecords(scene.geometry.cells());
    table.writable(CellField::TM);
    perCell(state, [&] {
        const auto raster = scene.workspace->openRasterDataset("g")->createDefaultRaster();
        gridIntoField(scene.platform.loop(), *raster, table, CellField::TM);
    });
}
BENCHMARK(readIntoField)->Unit(benchmark::kMillisecond)->UseRealTime();

void equations(benchmark::State& state) {
    Scene scene;
    CellTable table;
    scene.fill(table);
    const auto method = static_cast<RefEtMethod>(state.range(0));
    const ElevationParts parts = elevationParts(scene.platform.loop(), table);
    perCell(state, [&] {
        calculateRefEt(scene.platform.loop(), table, parts, method, {16, 7, 2006}, kSide,
                       static_cast<double>(kNoData));
    });
}
BENCHMARK(equations)
    ->ArgName("method")
    ->DenseRange(2, 6)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

void workDatabase(benchmark::State& state) {
    Scene scene;
    CellTable table;
    scene.fill(table);
    perCell(state, [&] { storeWorkDatabase(scene.platform, scene.folder + "/GridOP", table); });
}
BENCHMARK(workDatabase)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace velmora::bench

BENCHMARK_MAIN();
