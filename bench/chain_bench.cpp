// SPDX-License-Identifier: MIT
// Inputs of a whole chain at 1,000,000 cells, for bench/chain.sh and bench/stations.sh:
//   bench_chain FOLDER [STATIONS]
// writes the big basin with 60 stations, or so many, with 50,000 fields of ten crops, 30 zones and
// a crop coefficient table.
#include <array>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench/big_basin.h"

namespace velmora::bench {
namespace {

constexpr int kCells = 1000;  // each way
constexpr int kFields = 50'000;
constexpr int kZonesAcross = 6;
constexpr int kZonesDown = 5;
const std::array<const char*, 10> kCrops = {"Alfalfa",      "Barley",    "Corn",  "Spring Wheat",
                                            "Potatoes",     "Pasture",   "Beans", "Sugar Beets",
                                            "Grass / Turf", "Open Water"};

// Squares of 400 m in rows, each turned a little, so that none lies along the cells.
std::vector<NewFeature> fields(const Envelope& e) {
    std::mt19937 random(13);
    std::uniform_real_distribution<double> turn(-0.4, 0.4);
    std::uniform_int_distribution<std::size_t> crop(0, kCrops.size() - 1);
    const int across = static_cast<int>(std::ceil(std::sqrt(kFields)));
    const double spacing = e.width() / across;
    std::vector<NewFeature> all;
    for (int i = 0; i < kFields; ++i) {
        const int row = i / across;
        const double x = e.xMin + (i % across + 0.5) * spacing;
        const double y = e.yMin + (row + 0.5) * spacing;
        const double angle = turn(random);
        std::vector<Point> ring;
        for (const int corner : {0, 1, 2, 3, 0}) {
            const double direction = angle - corner * std::acos(-1.0) / 2;
            ring.push_back({x + 280 * std::cos(direction), y + 280 * std::sin(direction)});
        }
        all.push_back({ring, {std::string(kCrops[crop(random)]), 156800.0}});
    }
    return all;
}

std::vector<NewFeature> zones(const Envelope& e) {
    std::vector<NewFeature> all;
    for (int i = 0; i < kZonesAcross * kZonesDown; ++i) {
        const double width = e.width() / kZonesAcross;
        const double height = e.height() / kZonesDown;
        const int row = i / kZonesAcross;
        const double x = e.xMin + i % kZonesAcross * width;
        const double y = e.yMin + row * height;
        all.push_back(
            rectangle({x, y, x + width, y + height}, {"District " + std::to_string(i + 1)}));
    }
    return all;
}

void make(const std::string& folder, int stations) {
    platform::Platform platform;
    const RunSettings settings = makeBigBasin(platform, folder, kCells, stations);
    auto& features = platform.features();
    const auto domain = features.openFeatureClass(settings.ExtentProvider);
    features.createFeatureClass(
        folder + "/fields.shp", true, domain->crs(),
        {{"Descriptio", FieldType::text, 30, 0}, {"AREA", FieldType::number, 19, 3}},
        fields(domain->extent()));
    features.createFeatureClass(folder + "/zones.shp", true, domain->crs(),
                                {{"NAME", FieldType::text, 30, 0}}, zones(domain->extent()));
    std::vector<Field> columns = {{"CropType", FieldType::text, 75, 0}};
    for (int m = 1; m <= 12; ++m) {
        columns.push_back({"Kc_" + GetMonthName(m), FieldType::number, 20, 5});
    }
    std::vector<std::vector<FieldValue>> records;
    for (const char* crop : kCrops) {
        records.push_back({std::string(crop)});
        for (int m = 1; m <= 12; ++m) {
            records.back().emplace_back(0.3 + 0.8 * std::exp(-0.1 * (m - 7) * (m - 7)));
        }
    }
    features.createTable(folder + "/kc.dbf", columns, records);
}

}  // namespace
}  // namespace velmora::bench

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::fprintf(stderr, "usage: bench_chain FOLDER [STATIONS]\n");
        return 2;
    }
    velmora::bench::make(argv[1], argc > 2 ? std::stoi(argv[2]) : velmora::bench::kStations);
    return 0;
}
