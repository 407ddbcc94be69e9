// SPDX-License-Identifier: MIT
#include "platform/analysis/kriging.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include "gis/memory_raster.h"
#include "platform/analysis/interpolation.h"
#include "platform/threads/parallel_loop.h"
#include "tests/support/plain_kriging.h"

namespace velmora::platform {
namespace {

using test::plainKriging;

std::vector<Sample> randomStations(std::size_t count, double width, double height, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> share(0, 1);
    std::vector<Sample> samples;
    for (std::size_t i = 0; i < count; ++i) {
        samples.push_back({{width * share(random), height * share(random)}, 10 * share(random)});
    }
    return samples;
}

struct Kriging : testing::Test {
    InterpolationOp op;
    const GridGeometry geometry{310, 170, 0, 1700, 10, ""};

    RasterPtr raster(const std::vector<Sample>& samples, const SphericalModel& model,
                     const GridGeometry& g, int nearest = 12) {
        useCells(op.environment(), g);
        return op.Krige(samples, model, nearest);
    }
    void expectPlain(const std::vector<Sample>& samples, const SphericalModel& model,
                     const GridGeometry& g, int nearest = 12) {
        const Grid grid = wholeGrid(*raster(samples, model, g, nearest));
        for (int r = 0; r < g.rows; r += 3) {
            for (int c = 0; c < g.columns; c += 2) {
                ASSERT_NEAR(grid.at(c, r),
                            plainKriging(samples, {g.columnCentre(c), g.rowCentre(r)}, model,
                                         static_cast<std::size_t>(nearest)),
                            1e-5)
                    << c << " " << r;
            }
        }
    }
};

TEST_F(Kriging, AgreesWithThePlainCalculation) {
    for (const std::size_t stations : {4U, 11U, 12U, 13U, 60U, 300U}) {
        expectPlain(randomStations(stations, 3100, 1700, 11), {0.5, 4, 900}, geometry);
    }
    expectPlain(randomStations(40, 3100, 1700, 12), {0, 3, 20000}, geometry);
    expectPlain(randomStations(40, 3100, 1700, 13), {2, 0, 100}, geometry, 5);
    expectPlain(randomStations(40, 3100, 1700, 14), {0, 1, 30}, geometry);
}

TEST_F(Kriging, StationsInARegularPatternHaveManyTies) {
    std::vector<Sample> samples;
    for (int i = 0; i < 9; ++i) {
        for (int j = 0; j < 9; ++j) {
            samples.push_back({{i * 100.0, j * 100.0}, std::fmod(37.0 * i + 11.0 * j, 17.0)});
        }
    }
    expectPlain(samples, {0.3, 5, 350}, {100, 100, -95, 905, 10, ""});
}

TEST_F(Kriging, AStationInACellCentreGivesItsValue) {
    auto samples = randomStations(15, 200, 200, 5);
    samples[7].at = {105, 95};
    const Grid grid = wholeGrid(*raster(samples, {0.7, 1, 90}, {20, 20, 0, 200, 10, ""}));
    EXPECT_NEAR(grid.at(10, 10), samples[7].value, 1e-5);
}

TEST_F(Kriging, AlikeStationsGiveTheirValueEverywhere) {
    auto samples = randomStations(30, 3100, 1700, 6);
    for (Sample& s : samples) s.value = 4.25;
    for (const float v : wholeGrid(*raster(samples, {0.2, 1, 500}, geometry)).values) {
        ASSERT_NEAR(v, 4.25, 1e-6);
    }
}

TEST_F(Kriging, ABlockGivesTheSameBitsAsTheWholeAndOneThreadAsMany) {
    const auto samples = randomStations(90, 3100, 1700, 21);
    const RasterPtr surface = raster(samples, {0.1, 2, 700}, geometry);
    const Grid whole = wholeGrid(*surface);
    for (const CellBlock block : {CellBlock{0, 16, 256, 16}, CellBlock{250, 7, 31, 13},
                                  CellBlock{309, 169, 1, 1}, CellBlock{3, 0, 300, 170}}) {
        std::vector<float> cells(block.cells());
        surface->read(block, cells);
        for (int r = 0; r < block.rows; ++r) {
            for (int c = 0; c < block.columns; ++c) {
                ASSERT_EQ(cells[static_cast<std::size_t>(r * block.columns + c)],
                          whole.at(block.column + c, block.row + r));
            }
        }
    }
    useThreads(1);
    InterpolationOp other;
    useCells(other.environment(), geometry);
    EXPECT_EQ(wholeGrid(*other.Krige(samples, SphericalModel{0.1, 2, 700}, 12)).values,
              whole.values);
    useThreads(0);
}

TEST_F(Kriging, CoincidentStationsCountOnceWithTheirMean) {
    auto samples = randomStations(10, 3100, 1700, 8);
    auto twice = samples;
    twice[3].value = samples[3].value - 1;
    twice.push_back({samples[3].at, samples[3].value + 1});
    EXPECT_EQ(wholeGrid(*raster(twice, {0, 1, 900}, geometry)).values,
              wholeGrid(*raster(samples, {0, 1, 900}, geometry)).values);
    useCells(op.environment(), geometry);
    EXPECT_EQ(wholeGrid(*op.Krige(twice, SemivariogramType::spherical, 12)).values,
              wholeGrid(*op.Krige(samples, SemivariogramType::spherical, 12)).values);
}

TEST_F(Kriging, FitsItsOwnModel) {
    const auto samples = randomStations(40, 3100, 1700, 31);
    useCells(op.environment(), geometry);
    const auto fitted = op.semivariogram(samples);
    ASSERT_TRUE(fitted);
    EXPECT_EQ(wholeGrid(*op.Krige(samples, SemivariogramType::spherical, 12)).values,
              wholeGrid(*op.Krige(samples, fitted->model, 12)).values);
}

TEST_F(Kriging, WithoutAModelThereIsNoRaster) {
    useCells(op.environment(), geometry);
    EXPECT_EQ(op.Krige(randomStations(3, 3100, 1700, 1), SemivariogramType::spherical, 12),
              nullptr);
    EXPECT_EQ(op.Krige({}, SemivariogramType::spherical, 12), nullptr);
    auto alike = randomStations(9, 3100, 1700, 1);
    for (Sample& s : alike) s.value = 0.3;
    EXPECT_EQ(op.Krige(alike, SemivariogramType::spherical, 12), nullptr);
}

TEST_F(Kriging, StationsAllButAtOnePlaceHaveNoSolution) {
    auto samples = randomStations(10, 3100, 1700, 8);
    samples.push_back({{samples[2].at.x + 1e-11, samples[2].at.y}, 3});
    EXPECT_EQ(raster(samples, {0, 1, 90000}, geometry), nullptr);
    EXPECT_NE(raster(samples, {0.1, 1, 90000}, geometry), nullptr);  // a nugget parts them
}

TEST(KrigingSystem, ByHand) {
    // Two stations 1 apart, correlation 0.5 (1.5 u - 0.5 u^3 with u = 0.347...), values 1 and 3:
    // halfway between both weigh 0.5 whatever the model; far beyond the range too.
    const Correlation correlation({0, 2, 2.9});
    KrigingSystem system;
    ASSERT_TRUE(system.factorise(std::vector<Point>{{0, 0}, {1, 0}}, correlation));
    std::vector<double> coefficients(3);
    system.solve(std::vector<double>{1, 3}, coefficients);
    const auto at = [&](double x) {
        return coefficients[2] + coefficients[0] * correlation.at(x * x) +
               coefficients[1] * correlation.at((x - 1) * (x - 1));
    };
    EXPECT_NEAR(at(0.5), 2, 1e-12);
    EXPECT_NEAR(at(1000), 2, 1e-12);
    EXPECT_NEAR(at(0), 1, 1e-12);
    EXPECT_NEAR(at(1), 3, 1e-12);
}

// The nugget alone tells, however close and however many the stations are.
TEST(KrigingSystem, ANuggetMakesEverySystemSolvable) {
    std::mt19937 random(17);
    std::uniform_real_distribution<double> share(0, 1);
    for (const double nugget : {2e-6, 1e-4, 0.3}) {
        const Correlation correlation({nugget, 1 - nugget, 90000});
        for (int round = 0; round < 200; ++round) {
            std::vector<Point> stations;
            for (int s = 0; s < 12; ++s) {
                const double spread = s % 3 == 0 ? 1e-9 : 1000;
                stations.push_back({spread * share(random), spread * share(random)});
            }
            Eigen::MatrixXd matrix = Eigen::MatrixXd::Ones(13, 13);
            for (int i = 0; i < 12; ++i) {
                for (int j = 0; j < 12; ++j) {
                    const auto& a = stations[static_cast<std::size_t>(i)];
                    const auto& b = stations[static_cast<std::size_t>(j)];
                    matrix(i, j) =
                        correlation.at((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y));
                }
            }
            matrix(12, 12) = 0;
            EXPECT_GT(Eigen::PartialPivLU<Eigen::MatrixXd>(matrix).rcond(), 1e-12);
            KrigingSystem system;
            EXPECT_TRUE(system.factorise(stations, correlation));
        }
    }
}

TEST(NeighbourSets, HoldEveryCellsNearestStationsOnce) {
    const GridGeometry g{300, 50, 0, 500, 10, ""};
    std::vector<Point> stations;
    for (const Sample& s : randomStations(80, 3000, 500, 4)) stations.push_back(s.at);
    const NeighbourSets sets(g, stations, 12);
    std::vector<int> seen(g.cells(), -1);
    for (const NeighbourSets::Leaf* leaf : sets.leaves({0, 0, g.columns, g.rows})) {
        for (int r = 0; r < leaf->cells.rows; ++r) {
            for (int c = 0; c < leaf->cells.columns; ++c) {
                const auto cell = static_cast<std::size_t>(r * leaf->cells.columns + c);
                const std::size_t choice = leaf->choice.empty() ? 0 : leaf->choice[cell];
                int& place = seen[static_cast<std::size_t>((leaf->cells.row + r) * g.columns +
                                                           leaf->cells.column + c)];
                EXPECT_EQ(place, -1);
                place = static_cast<int>(leaf->sets[choice]);
            }
        }
    }
    for (int r = 0; r < g.rows; ++r) {
        for (int c = 0; c < g.columns; ++c) {
            std::vector<std::pair<double, int>> order;
            for (std::size_t s = 0; s < stations.size(); ++s) {
                const double dx = stations[s].x - g.columnCentre(c);
                const double dy = stations[s].y - g.rowCentre(r);
                order.emplace_back(dx * dx + dy * dy, static_cast<int>(s));
            }
            std::sort(order.begin(), order.end());
            std::vector<int> nearest;
            for (std::size_t k = 0; k < 12; ++k) nearest.push_back(order[k].second);
            std::sort(nearest.begin(), nearest.end());
            const int place = seen[static_cast<std::size_t>(r * g.columns + c)];
            ASSERT_GE(place, 0);
            ASSERT_TRUE(std::ranges::equal(sets.set(static_cast<std::size_t>(place)), nearest));
        }
    }
    // Each set is there once.
    for (std::size_t a = 0; a < sets.count(); ++a) {
        for (std::size_t b = 0; b < a; ++b) {
            ASSERT_FALSE(std::ranges::equal(sets.set(a), sets.set(b)));
        }
    }
    EXPECT_LT(sets.count(), g.cells() / 10);
}

}  // namespace
}  // namespace velmora::platform
