// SPDX-License-Identifier: MIT
// Inputs of a whole chain at 1,000,000 cells, for bench/chain.sh, stations.sh and efficiency.sh:
//   bench_chain FOLDER [STATIONS [FIELDS ZONES]]
// writes the big basin with 60 stations, 50,000 fields of ten crops and 30 zones, or so many, and a
// crop coefficient table.
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
constexpr int kZones = 30;
const std::array<const char*, 10> kCrops = {"Alfalfa",      "Barley",    "Corn",  "Spring Wheat",
                                            "Potatoes",     "Pasture",   "Beans", "Sugar Beets",
                                            "Grass / Turf", "Open Water"};

// Squares in rows, of 400 m when there are 50,000, each turned a little, so that none lies along
// the cells.
std::vector<NewFeature> fields(const Envelope& e, int count) {
    std::mt19937 random(13);
    std::uniform_real_distribution<double> turn(-0.4, 0.4);
    std::uniform_int_distribution<std::size_t> crop(0, kCrops.size() - 1);
    const int across = static_cast<int>(std::ceil(std::sqrt(count)));
    const double spacing = e.width() / across;
    const double size = std::sqrt(static_cast<double>(kFields) / count);
    const double reach = 280 * size;
    std::vector<NewFeature> all;
    for (int i = 0; i < count; ++i) {
        const int row = i / across;
        const double x = e.xMin + (i % across + 0.5) * spacing;
        const double y = e.yMin + (row + 0.5) * spacing;
        const double angle = turn(random);
        std::vector<Point> ring;
        for (const int corner : {0, 1, 2, 3, 0}) {
            const double direction = angle - corner * std::acos(-1.0) / 2;
            ring.push_back({x + reach * std::cos(direction), y + reach * std::sin(direction)});
        }
        all.push_back({ring, {std::string(kCrops[crop(random)]), 156800.0 * size * size}});
    }
    return all;
}

// Rectangles in rows, a sixth more across than down.
std::vector<NewFeature> zones(const Envelope& e, int count) {
    const int across = static_cast<int>(std::ceil(std::sqrt(1.2 * count)));
    const int down = (count + across - 1) / across;
    const double width = e.width() / across;
    const double height = e.height() / down;
    std::vector<NewFeature> all;
    for (int i = 0; i < count; ++i) {
        const int row = i / across;
        const double x = e.xMin + i % across * width;
        const double y = e.yMin + row * height;
        all.push_back(
            rectangle({x, y, x + width, y + height}, {"District " + std::to_string(i + 1)}));
    }
    return all;
}

void make(const std::string& folder, int stations, int fieldCount, int zoneCount) {
    platform::Platform platform;
    const RunSettings settings = makeBigBasin(platform, folder, kCells, stations);
    auto& features = platform.features();
    const auto domain = features.openFeatureClass(settings.ExtentProvider);
    features.createFeatureClass(
        folder + "/fields.shp", true, domain->crs(),
        {{"Descriptio", FieldType::text, 30, 0}, {"AREA", FieldType::number, 19, 3}},
        fields(domain->extent(), fieldCount));
    features.createFeatureClass(folder + "/zones.shp", true, domain->crs(),
                                {{"NAME", FieldType::text, 30, 0}},
                                zones(domain->extent(), zoneCount));
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
    using namespace velmora::bench;
    if (argc != 2 && argc != 3 && argc != 5) {
        std::fprintf(stderr, "usage: bench_chain FOLDER [STATIONS [FIELDS ZONES]]\n");
        return 2;
    }
    const auto number = [&](int place, int otherwise) {
        return argc > place ? std::stoi(argv[place]) : otherwise;
    };
    make(argv[1], number(2, kStations), number(3, kFields), number(4, kZones));
    return 0;
}
