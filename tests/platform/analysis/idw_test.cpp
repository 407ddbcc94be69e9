// SPDX-License-Identifier: MIT
#include "platform/analysis/idw.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "gis/memory_raster.h"
#include "platform/analysis/coincident.h"

namespace velmora::platform {
namespace {

// The plain calculation: sort all stations by distance, weigh the nearest.
float plain(const std::vector<Sample>& samples, Point at, double power, std::size_t nearest) {
    std::vector<std::pair<double, std::size_t>> order;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double dx = at.x - samples[i].at.x;
        const double dy = at.y - samples[i].at.y;
        order.emplace_back(dx * dx + dy * dy, i);
    }
    std::sort(order.begin(), order.end());
    order.resize(std::min(nearest, order.size()));
    if (order[0].first == 0) return static_cast<float>(samples[order[0].second].value);
    double weights = 0;
    double sum = 0;
    for (const auto& [squared, i] : order) {
        const double weight = std::pow(std::sqrt(squared), -power);
        weights += weight;
        sum += weight * samples[i].value;
    }
    return static_cast<float>(sum / weights);
}

std::vector<Sample> randomStations(std::size_t count, double width, double height, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> share(0, 1);
    std::vector<Sample> samples;
    for (std::size_t i = 0; i < count; ++i) {
        samples.push_back({{width * share(random), height * share(random)}, 100 * share(random)});
    }
    return samples;
}

struct Idw : testing::Test {
    static RasterPtr raster(const std::vector<Sample>& samples, const GridGeometry& g, double power,
                            int nearest) {
        std::vector<Point> points;
        std::vector<double> values;
        for (const Sample& station : mergedCoincident(samples)) {
            points.push_back(station.at);
            values.push_back(station.value);
        }
        return idwRaster(std::make_shared<IdwPlan>(g, points, power, nearest), values);
    }
    static Grid surface(const std::vector<Sample>& samples, const GridGeometry& g, double power = 2,
                        int nearest = 12) {
        return wholeGrid(*raster(samples, g, power, nearest));
    }
    void expectPlain(const std::vector<Sample>& samples, const GridGeometry& g, double power = 2,
                     int nearest = 12) {
        const Grid grid = surface(samples, g, power, nearest);
        for (int r = 0; r < g.rows; ++r) {
            for (int c = 0; c < g.columns; ++c) {
                ASSERT_NEAR(grid.at(c, r),
                            plain(samples, {g.columnCentre(c), g.rowCentre(r)}, power,
                                  static_cast<std::size_t>(nearest)),
                            2e-5)
                    << c << " " << r;
            }
        }
    }
};

TEST_F(Idw, AgreesWithThePlainCalculation) {
    const GridGeometry g{310, 170, 0, 1700, 10, ""};
    for (const std::size_t stations : {1U, 5U, 12U, 13U, 60U, 300U}) {
        expectPlain(randomStations(stations, 3100, 1700, 11), g);
    }
    expectPlain(randomStations(40, 3100, 1700, 12), g, 1);
    expectPlain(randomStations(40, 3100, 1700, 13), g, 3.5, 4);
}

TEST_F(Idw, StationsInARegularPatternHaveManyTies) {
    std::vector<Sample> samples;
    for (int i = 0; i < 9; ++i) {
        for (int j = 0; j < 9; ++j) {
            samples.push_back({{i * 100.0, j * 100.0}, std::fmod(37.0 * i + 11.0 * j, 17.0)});
        }
    }
    expectPlain(samples, {100, 100, -95, 905, 10, ""});
}

TEST_F(Idw, AStationInACellCentreGivesItsValue) {
    const GridGeometry g{20, 20, 0, 200, 10, ""};
    auto samples = randomStations(15, 200, 200, 5);
    samples[7].at = {105, 95};
    EXPECT_EQ(surface(samples, g).at(10, 10), static_cast<float>(samples[7].value));
}

TEST_F(Idw, EqualDistancesGoToTheSmallerXThenY) {
    // Two stations beside the only centre, one neighbour allowed.
    const GridGeometry g{1, 1, 0, 10, 10, ""};
    EXPECT_EQ(surface({{{0, 5}, 1}, {{10, 5}, 2}}, g, 2, 1).values[0], 1.0F);
    EXPECT_EQ(surface({{{10, 5}, 2}, {{0, 5}, 1}}, g, 2, 1).values[0], 1.0F);
    EXPECT_EQ(surface({{{5, 10}, 2}, {{5, 0}, 1}}, g, 2, 1).values[0], 1.0F);
    EXPECT_EQ(surface({{{5, 0}, 1}, {{5, 10}, 2}}, g, 2, 1).values[0], 1.0F);
}

TEST_F(Idw, TheMeanOfCoincidentStationsDoesNotDependOnTheirOrder) {
    // 1e16 + 1 is 1e16 in doubles.
    const Sample a{{3, 3}, 1e16};
    const Sample b{{3, 3}, 1};
    const Sample c{{3, 3}, -1e16};
    const double mean = mergedCoincident({a, b, c})[0].value;
    for (const auto& order : {std::vector{a, c, b}, {b, a, c}, {b, c, a}, {c, a, b}, {c, b, a}}) {
        EXPECT_EQ(mergedCoincident(order)[0].value, mean);
    }
}

TEST_F(Idw, CoincidentStationsCountOnceWithTheirMean) {
    const std::vector<Sample> twice = {{{1, 1}, 10}, {{5, 5}, 4}, {{1, 1}, 20}};
    const auto merged = mergedCoincident(twice);
    ASSERT_EQ(merged.size(), 2U);
    EXPECT_EQ(merged[0].value, 15);
    EXPECT_EQ(merged[0].at, (Point{1, 1}));
    EXPECT_EQ(surface(twice, {4, 4, 0, 8, 2, ""}).values,
              surface({{{1, 1}, 15}, {{5, 5}, 4}}, {4, 4, 0, 8, 2, ""}).values);
}

TEST_F(Idw, ConstantStationsGiveAConstant) {
    auto samples = randomStations(50, 1000, 1000, 3);
    for (Sample& s : samples) s.value = 7.25;
    for (const float v : surface(samples, {300, 40, 0, 1000, 7, ""}).values)
        EXPECT_NEAR(v, 7.25, 1e-6);
}

TEST_F(Idw, ABlockGivesTheSameBitsAsTheWhole) {
    const GridGeometry g{300, 100, 0, 1000, 10, ""};
    const auto samples = randomStations(60, 3000, 1000, 21);
    const Grid whole = surface(samples, g);
    const RasterPtr part = raster(samples, g, 2, 12);
    for (const CellBlock block :
         {CellBlock{0, 16, 256, 16}, CellBlock{13, 7, 31, 3}, CellBlock{299, 99, 1, 1}}) {
        std::vector<float> cells(block.cells());
        part->read(block, cells);
        for (int r = 0; r < block.rows; ++r) {
            for (int c = 0; c < block.columns; ++c) {
                EXPECT_EQ(cells[static_cast<std::size_t>(r * block.columns + c)],
                          whole.at(block.column + c, block.row + r));
            }
        }
    }
}

}  // namespace
}  // namespace velmora::platform
