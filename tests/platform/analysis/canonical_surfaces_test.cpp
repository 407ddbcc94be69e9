// SPDX-License-Identifier: MIT
// Surfaces depend on the stations alone: not on the order of their records, on where the origin of
// the coordinates lies, on the number of threads, nor on the compiler.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>

#include "gis/memory_raster.h"
#include "platform/analysis/coincident.h"
#include "platform/analysis/interpolation.h"
#include "platform/analysis/semivariogram.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::platform {
namespace {

// Coordinates are multiples of 1/8 m, so that a move by whole metres is exact.
constexpr GridGeometry cells() { return {23, 17, 400000.5, 4500000.25, 2100.5, ""}; }

struct Network {
    std::string name;
    std::vector<Sample> samples;
};

class Networks {
  public:
    static std::vector<Network> all() {
        Networks make;
        std::vector<Network> networks;
        for (const std::size_t count : {4U,  5U,  5U,  5U,  6U,  7U,  8U,  9U,  10U, 11U, 12U, 13U,
                                        14U, 16U, 18U, 20U, 22U, 25U, 28U, 33U, 40U, 50U, 60U}) {
            for (const double noise : {0.1, 3.0}) {
                networks.push_back(make.scattered(count, noise));
                networks.push_back(make.withTwins(make.scattered(count, noise)));
            }
        }
        for (std::size_t count = 4, found = 0; found < 16; count = count < 60 ? count + 1 : 4) {
            Network network = make.scattered(count, 6.0);
            const auto fitted = semivariogramOf(network.samples);
            if (!fitted || !fitted->longestEqualRange) continue;
            network.name += ", several optima";
            networks.push_back(std::move(network));
            ++found;
        }
        networks.push_back(make.lattice());
        networks.push_back(plateau());
        return networks;
    }

  private:
    double share() { return static_cast<double>(random_()) / 4294967296.0; }
    double eighths(double low, double width) { return low + std::floor(width * 8 * share()) / 8; }

    Network scattered(std::size_t count, double noise) {
        Network network{std::to_string(count) + " stations, noise " + std::to_string(noise), {}};
        for (std::size_t i = 0; i < count; ++i) {
            const Point at{eighths(400000, 48000), eighths(4464000, 36000)};
            const double field = std::sin(at.x / 9000) + std::cos(at.y / 7000 + at.x / 20000);
            network.samples.push_back({at, 2 + field + noise * (share() - 0.5)});
        }
        return network;
    }

    // Every fifth station stands three times, with values whose sum depends on their order.
    Network withTwins(Network network) {
        for (std::size_t i = 0; i < network.samples.size(); i += 5) {
            const Sample station = network.samples[i];
            network.samples.push_back({station.at, station.value + 1e9});
            network.samples.push_back({station.at, station.value / 3 - 1e9});
        }
        network.name += " and twins";
        return network;
    }

    // Distances that lie on the borders of classes, cells with many equally near stations.
    Network lattice() {
        Network network{"lattice", {}};
        for (int i = 0; i < 49; ++i) {
            network.samples.push_back(
                {{400000 + 6000.0 * (i % 7), 4465000 + 5000.0 * (i / 7)}, 4 * share()});
        }
        return network;
    }

    // Pairs that stand near each other and alike; all others far and equally unlike: every range
    // between the first two classes fits.
    static Network plateau() {
        Network network{"plateau", {}};
        for (int i = 0; i < 6; ++i) {
            const Point at{400000 + 5000.0 * i, 4470000 + 3000.0 * ((i * 5) % 7)};
            network.samples.push_back({at, static_cast<double>(i % 3)});
            network.samples.push_back(
                {{at.x + 400, at.y + 125}, static_cast<double>(i % 3) + 0.25});
        }
        return network;
    }

    std::mt19937 random_{20261121};
};

struct Surfaces {
    std::vector<float> kriged;  // empty without a model
    std::vector<float> weighted;
    bool operator==(const Surfaces&) const = default;
};

Surfaces surfacesOf(const std::vector<Sample>& samples, const GridGeometry& geometry) {
    InterpolationOp op;
    useCells(op.environment(), geometry);
    Surfaces surfaces;
    if (const RasterPtr kriged = op.Krige(samples, SemivariogramType::spherical, 12)) {
        surfaces.kriged = wholeGrid(*kriged).values;
    }
    surfaces.weighted = wholeGrid(*op.IDW(samples, 2, 12)).values;
    return surfaces;
}

std::vector<Sample> shuffled(std::vector<Sample> samples, std::mt19937& random) {
    for (std::size_t i = samples.size(); i > 1; --i)
        std::swap(samples[i - 1], samples[random() % i]);
    return samples;
}

std::vector<Sample> moved(std::vector<Sample> samples, double east, double north) {
    for (Sample& s : samples) s.at = {s.at.x + east, s.at.y + north};
    return samples;
}

TEST(CanonicalSurfaces, TheOrderOfTheRecordsChangesNothing) {
    std::mt19937 random(4);
    for (const Network& network : Networks::all()) {
        const Surfaces surfaces = surfacesOf(network.samples, cells());
        for (int round = 0; round < 4; ++round) {
            ASSERT_EQ(surfacesOf(shuffled(network.samples, random), cells()), surfaces)
                << network.name;
        }
    }
}

TEST(CanonicalSurfaces, TheOriginChangesNothing) {
    constexpr double kEast = 1024.0 * 977;
    constexpr double kNorth = -1024.0 * 4409;
    GridGeometry there = cells();
    there.xMin += kEast;
    there.yMax += kNorth;
    for (const Network& network : Networks::all()) {
        ASSERT_EQ(surfacesOf(moved(network.samples, kEast, kNorth), there),
                  surfacesOf(network.samples, cells()))
            << network.name;
    }
}

// A move that rounds every coordinate changes distances in their last bits: the fitted range, which
// carries fewer digits than that, stays.
TEST(CanonicalSurfaces, RoundingOfTheCoordinatesChangesNoRange) {
    std::size_t fitted = 0;
    for (const Network& network : Networks::all()) {
        const auto here = semivariogramOf(mergedCoincident(network.samples));
        const auto there =
            semivariogramOf(mergedCoincident(moved(network.samples, 1e6 / 3, 1e7 / 7)));
        ASSERT_EQ(here.has_value(), there.has_value()) << network.name;
        if (!here) continue;
        ++fitted;
        EXPECT_NEAR(there->model.range, here->model.range, 2e-7 * here->model.range)
            << network.name;
        EXPECT_NEAR(there->model.nugget, here->model.nugget, 3e-6 * here->model.sill())
            << network.name;
        EXPECT_EQ(there->longestEqualRange.has_value(), here->longestEqualRange.has_value());
    }
    EXPECT_GT(fitted, 80U);
}

TEST(CanonicalSurfaces, TheNetworksHoldTheHardKinds) {
    std::size_t severalOptima = 0;
    std::size_t fewLags = 0;
    for (const Network& network : Networks::all()) {
        const auto fitted = semivariogramOf(mergedCoincident(network.samples));
        if (!fitted) continue;
        if (fitted->longestEqualRange) ++severalOptima;
        if (fitted->lags.size() < 3) ++fewLags;
    }
    EXPECT_GE(severalOptima, 17U);
    EXPECT_GE(fewLags, 5U);
}

TEST(CanonicalSurfaces, TheNumberOfThreadsChangesNothing) {
    GridGeometry fine = cells();  // several tiles each way
    fine.columns = 600;
    fine.rows = 40;
    fine.cellSize = 80.5;
    const std::vector<Network> networks = Networks::all();
    for (std::size_t i = 0; i < networks.size(); i += 7) {
        useThreads(1);
        const Surfaces surfaces = surfacesOf(networks[i].samples, fine);
        for (const int threads : {2, 3, 8, 0}) {
            useThreads(threads);
            EXPECT_EQ(surfacesOf(networks[i].samples, fine), surfaces) << networks[i].name;
        }
    }
    useThreads(0);
}

// FNV-1a over the bits of all surfaces: every compiler and level of optimisation gives this number.
TEST(CanonicalSurfaces, TheCompilerChangesNothing) {
    std::uint64_t hash = 14695981039346656037ULL;
    for (const Network& network : Networks::all()) {
        const Surfaces surfaces = surfacesOf(network.samples, cells());
        for (const std::vector<float>* values : {&surfaces.kriged, &surfaces.weighted}) {
            for (const float value : *values) {
                hash = (hash ^ std::bit_cast<std::uint32_t>(value)) * 1099511628211ULL;
            }
        }
    }
    EXPECT_EQ(hash, 10939413766207583583ULL);
}

}  // namespace
}  // namespace velmora::platform
