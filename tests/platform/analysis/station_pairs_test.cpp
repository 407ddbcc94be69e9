// SPDX-License-Identifier: MIT
#include "platform/analysis/station_pairs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>

namespace velmora::platform {
namespace {

constexpr std::size_t kClasses = 15;

// All pairs one after the other, each looked at with the C library's hypotenuse.
std::vector<PairSums> plainSums(const std::vector<Sample>& stations, double cutoff) {
    std::vector<PairSums> sums(kClasses);
    for (std::size_t i = 0; i < stations.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            const double distance = std::hypot(stations[i].at.x - stations[j].at.x,
                                               stations[i].at.y - stations[j].at.y);
            if (distance > cutoff + 1e-9 * cutoff) continue;
            const double place = std::ceil(distance / (cutoff / kClasses) - 1e-9);
            PairSums& sum = sums[static_cast<std::size_t>(std::clamp(place, 1.0, 15.0)) - 1];
            sum.distance += distance;
            const double difference = stations[i].value - stations[j].value;
            sum.squares += difference * difference;
            ++sum.pairs;
        }
    }
    return sums;
}

// The squares to the last bit: so they are added in the same order. The distances too, but for what
// hypotenuses of other C libraries differ.
std::size_t expectThePlainSums(const std::vector<Sample>& stations, double cutoff) {
    const auto sums = pairSums(stations, cutoff, kClasses);
    const auto plain = plainSums(stations, cutoff);
    EXPECT_EQ(sums.size(), kClasses);
    std::size_t pairs = 0;
    for (std::size_t k = 0; k < kClasses; ++k) {
        EXPECT_EQ(sums[k].pairs, plain[k].pairs) << k;
        EXPECT_EQ(sums[k].squares, plain[k].squares) << k;
        EXPECT_DOUBLE_EQ(sums[k].distance, plain[k].distance) << k;
        pairs += sums[k].pairs;
    }
    return pairs;
}

std::vector<Sample> scattered(int count, double across, double along) {
    std::mt19937 random(21);
    std::uniform_real_distribution<double> share(0, 1);
    std::vector<Sample> stations;
    for (int i = 0; i < count; ++i) {
        stations.push_back(
            {{312345.678 + across * share(random), 4187654.321 + along * share(random)},
             std::exp(3 * share(random))});
    }
    return stations;
}

std::vector<Sample> byPosition(std::vector<Sample> stations) {
    std::ranges::sort(stations, {}, [](const Sample& s) { return std::tuple(s.at.x, s.at.y); });
    return stations;
}

TEST(StationPairs, OfScatteredStationsInAnyOrder) {
    for (const int count : {2, 127, 128, 129, 1500}) {
        const std::vector<Sample> stations = scattered(count, 90000, 140000);
        expectThePlainSums(stations, 30000);
        expectThePlainSums(byPosition(stations), 30000);
        expectThePlainSums(byPosition(stations), 55000);
    }
    const auto few = byPosition(scattered(1500, 90000, 140000));
    EXPECT_GT(expectThePlainSums(few, 55000), 300'000U);
    EXPECT_EQ(expectThePlainSums(few, 500000), 1500U * 1499 / 2);  // the cutoff reaches all
    EXPECT_LT(expectThePlainSums(few, 10), 30U);
}

TEST(StationPairs, OfAFarOutlier) {
    auto stations = scattered(700, 20000, 20000);
    stations.push_back({{9e6, -2e6}, 3});
    const auto sorted = byPosition(stations);
    EXPECT_EQ(expectThePlainSums(sorted, 3e6), 700U * 699 / 2);
    expectThePlainSums(sorted, 8000);
}

TEST(StationPairs, OfStationsOnALine) {
    std::vector<Sample> across;
    std::vector<Sample> along;
    for (int i = 0; i < 600; ++i) {  // at equal distances: pairs on every border
        across.push_back({{100.0 * i, 7}, std::cos(i)});
        along.push_back({{7, 100.0 * i}, std::cos(i)});
    }
    EXPECT_EQ(expectThePlainSums(across, 15000), expectThePlainSums(along, 15000));
    // 10 steps a class, each up to its upper border.
    const auto sums = pairSums(across, 15000, kClasses);
    EXPECT_EQ(sums[0].pairs, 10U * 600 - 55);
    EXPECT_EQ(sums[14].pairs, 10U * 600 - 1455);
}

TEST(StationPairs, OfStationsAtOnePlaceAndAtTheCutoff) {
    // 3-4-5 triangles: the farthest pair is 50 apart, to the last bit.
    const std::vector<Sample> stations = {
        {{0, 0}, 1}, {{0, 0}, 4}, {{30, 40}, 2}, {{30, 40}, 7}, {{30, 40.001}, 9}};
    const auto sums = pairSums(stations, 50, kClasses);
    EXPECT_EQ(sums[0].pairs, 4U);  // one place, or 1 mm apart
    EXPECT_EQ(sums[0].distance, 2 * (40.001 - 40));
    EXPECT_EQ(sums[0].squares, 9 + 25 + 49 + 4);
    EXPECT_EQ(sums[14].pairs, 4U);  // and the others are beyond
    EXPECT_EQ(sums[14].distance, 200);
    EXPECT_EQ(expectThePlainSums(stations, 50), 8U);
    EXPECT_EQ(expectThePlainSums(stations, std::nextafter(50 / (1 + 1e-9), 0)), 4U);
}

TEST(StationPairs, GroupsBeyondTheCutoffArePassedOverAndNoOthers) {
    // Two clusters that are groups of their own, and whose boxes are 1000 apart.
    std::vector<Sample> stations = byPosition(scattered(128, 50, 50));
    for (int i = 0; i < 128; ++i) {
        Sample beyond = stations[static_cast<std::size_t>(i)];
        beyond.at.x += 1050;
        stations.push_back(beyond);
    }
    EXPECT_EQ(expectThePlainSums(stations, 900), 2 * 128U * 127 / 2);
    EXPECT_GT(expectThePlainSums(stations, 1010), 2 * 128U * 127 / 2);
    EXPECT_EQ(expectThePlainSums(stations, 1200), 256U * 255 / 2);
}

}  // namespace
}  // namespace velmora::platform
