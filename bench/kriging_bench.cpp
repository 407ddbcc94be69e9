// SPDX-License-Identifier: MIT
// Kriging of 1,000,000 cells, for bench/peers/kriging.sh:
//   bench_kriging make FOLDER STATIONS           writes the stations and their fitted model as text
//   bench_kriging time FOLDER STATIONS THREADS   kriges and saves a grid; prints the seconds
//   bench_kriging compare FOLDER STATIONS        the largest difference to the peer's values, as a
//                                                share of their range
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "gis/memory_raster.h"
#include "gis/numbers.h"
#include "platform/analysis/interpolation.h"
#include "platform/platform.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::bench {
namespace {

constexpr int kSide = 1000;
constexpr int kNearest = 12;
const GridGeometry kCells{kSide, kSide, 300000, 4300000, 100, ""};

// Residuals of a monthly precipitation: two waves across the domain and noise.
std::vector<Sample> stations(int count) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> share(0.02, 0.98);
    std::normal_distribution<double> noise(0, 0.1);
    std::vector<Sample> all;
    for (int i = 0; i < count; ++i) {
        const double u = share(random);
        const double v = share(random);
        all.push_back({{kCells.xMin + u * 1e5, kCells.yMax - v * 1e5},
                       std::sin(7 * u + 2 * v) + 0.6 * std::cos(9 * v - 3 * u) + noise(random)});
    }
    return all;
}

void make(const std::string& folder, int count) {
    const std::string name = folder + "/" + std::to_string(count);
    std::ofstream table(name + ".csv");
    table << "x,y,z\n";
    for (const Sample& s : stations(count)) {
        table << numberText(s.at.x) << ',' << numberText(s.at.y) << ',' << numberText(s.value)
              << '\n';
    }
    const auto fitted = platform::InterpolationOp().semivariogram(stations(count));
    std::ofstream(name + ".model")
        << numberText(fitted->model.nugget) << ' ' << numberText(fitted->model.partialSill) << ' '
        << numberText(fitted->model.range) << '\n';
}

double seconds(const std::string& folder, int count, int threads) {
    platform::Platform libraries;
    platform::useThreads(threads);
    const auto workspace = libraries.rasters().openFromFolder(folder);
    const std::vector<Sample> samples = stations(count);
    const auto start = std::chrono::steady_clock::now();
    const auto op = libraries.analysis().interpolation();
    useCells(op->environment(), kCells);
    workspace->save(std::array{RasterToSave{
        "kriged", op->Krige(samples, SemivariogramType::spherical, kNearest), "GRID"}});
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double difference(const std::string& folder, int count) {
    std::vector<double> peer(kCells.cells());
    std::ifstream file(folder + "/" + std::to_string(count) + ".values", std::ios::binary);
    file.read(reinterpret_cast<char*>(peer.data()),
              static_cast<std::streamsize>(peer.size() * sizeof(double)));
    platform::InterpolationOp op;
    useCells(op.environment(), kCells);
    const Grid ours = wholeGrid(*op.Krige(stations(count), SemivariogramType::spherical, kNearest));
    double largest = 0;
    for (std::size_t i = 0; i < peer.size(); ++i) {
        largest = std::max(largest, std::fabs(static_cast<double>(ours.values[i]) - peer[i]));
    }
    const auto [low, high] = std::ranges::minmax(peer);
    return file ? largest / (high - low) : NAN;
}

}  // namespace
}  // namespace velmora::bench

int main(int argc, char** argv) {
    using namespace velmora::bench;
    if (argc < 4) {
        std::puts("usage: bench_kriging make|time|compare FOLDER STATIONS [THREADS]");
        return 2;
    }
    const std::string what = argv[1];
    const int count = std::stoi(argv[3]);
    if (what == "make") {
        make(argv[2], count);
    } else if (what == "time") {
        std::printf("%.4f\n", seconds(argv[2], count, argc > 4 ? std::stoi(argv[4]) : 0));
    } else {
        std::printf("%.2e\n", difference(argv[2], count));
    }
    return 0;
}
