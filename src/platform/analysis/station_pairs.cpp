// SPDX-License-Identifier: MIT
#include "platform/analysis/station_pairs.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

#include "gis/envelope.h"
#include "platform/threads/per_processor.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kGroup = 128;      // stations that are passed over, or compared, together
constexpr std::size_t kBeyond = 16;      // places for pairs of no class: one would be a bottleneck
constexpr double kOnBorder = 1e-9;       // of a class: a pair this near a border is on it
constexpr double kSurelyBeyond = 1.001;  // of the cutoff, whatever is lost in rounding

// The stations column by column.
struct Columns {
    std::vector<double> x;
    std::vector<double> y;
    std::vector<double> values;

    explicit Columns(std::span<const Sample> stations) {
        for (const Sample& station : stations) {
            x.push_back(station.at.x);
            y.push_back(station.at.y);
            values.push_back(station.value);
        }
    }
};

struct Classes {
    double width;
    double farthest;  // of a pair that is in a class
    int count;
};

// One station with each of a group.
struct Pairs {
    std::array<double, kGroup> distances;
    std::array<double, kGroup> squares;
    std::array<int, kGroup> classes;
};

// One of two numbers that are both computed: a branch would keep a loop from being vectorised.
inline double chosen(bool first, double a, double b) {
    const std::uint64_t mask = -static_cast<std::uint64_t>(first);
    return std::bit_cast<double>((std::bit_cast<std::uint64_t>(a) & mask) |
                                 (std::bit_cast<std::uint64_t>(b) & ~mask));
}

inline int chosen(bool first, int a, int b) {
    const int mask = -static_cast<int>(first);
    return (a & mask) | (b & ~mask);
}

// The length of the hypotenuse: the root of the sum of the squares, less what is over by the
// differences of the squares (C. F. Borges, An improved algorithm for hypot(x, y), 2020, without
// fused operations). Unlike the C library's it is the same on every processor, and a loop of it
// vectorises.
inline double lengthOf(double x, double y) {
    const double across = std::fabs(x);
    const double along = std::fabs(y);
    const double longer = across > along ? across : along;
    const double shorter = across > along ? along : across;
    const double root = std::sqrt(longer * longer + shorter * shorter);
    const double overShorter = root - shorter;
    const double overLonger = root - longer;
    const double steep =
        longer * (2 * overShorter - longer) + (overShorter - 2 * (longer - shorter)) * overShorter;
    const double flat = 2 * overLonger * (longer - 2 * shorter) +
                        ((4 * overLonger - shorter) * shorter + overLonger * overLonger);
    const double over = chosen(root <= 2 * shorter, steep, flat);
    return root - over / chosen(root > 0, 2 * root, 1.0);
}

VELMORA_PER_PROCESSOR
void comparePairs(Pairs& pairs, const double* x, const double* y, const double* values,
                  std::size_t count, const Sample& station, const Classes& classes) {
    const double width = classes.width;
    const double farthest = classes.farthest;
    const double most = classes.count;
    const int last = classes.count - 1;
    for (std::size_t j = 0; j < count; ++j) {
        const double distance = lengthOf(station.at.x - x[j], station.at.y - y[j]);
        const double difference = station.value - values[j];
        const double widths = distance / width - kOnBorder;
        const double place = chosen(widths < most, widths, most);
        const int whole = static_cast<int>(place);
        const int closed = whole - 1 + static_cast<int>(place > whole);
        const int notBelow = closed > 0 ? closed : 0;
        const int within = notBelow < last ? notBelow : last;
        const int beyond = last + 1 + static_cast<int>(j % kBeyond);
        pairs.classes[j] = chosen(distance > farthest, beyond, within);
        pairs.distances[j] = distance;
        pairs.squares[j] = difference * difference;
    }
}

// The boxes around groups of stations.
std::vector<Envelope> boxesOf(const Columns& stations) {
    std::vector<Envelope> boxes;
    for (std::size_t first = 0; first < stations.x.size(); first += kGroup) {
        const std::size_t count = std::min(kGroup, stations.x.size() - first);
        const auto [west, east] = std::ranges::minmax(std::span(&stations.x[first], count));
        const auto [south, north] = std::ranges::minmax(std::span(&stations.y[first], count));
        boxes.push_back({west, south, east, north});
    }
    return boxes;
}

double distanceTo(const Envelope& box, const Point& at) {
    const double dx = std::max({box.xMin - at.x, at.x - box.xMax, 0.0});
    const double dy = std::max({box.yMin - at.y, at.y - box.yMax, 0.0});
    return std::hypot(dx, dy);
}

}  // namespace

std::vector<PairSums> pairSums(std::span<const Sample> stations, double cutoff,
                               std::size_t classes) {
    const Classes rule{cutoff / static_cast<double>(classes), cutoff * (1 + kOnBorder),
                       static_cast<int>(classes)};
    const Columns columns(stations);
    const std::vector<Envelope> boxes = boxesOf(columns);
    std::vector<PairSums> sums(classes + kBeyond);
    Pairs pairs;
    for (std::size_t i = 0; i < stations.size(); ++i) {
        for (std::size_t group = 0; group * kGroup < i; ++group) {
            if (distanceTo(boxes[group], stations[i].at) > kSurelyBeyond * cutoff) continue;
            const std::size_t first = group * kGroup;
            const std::size_t count = std::min(kGroup, i - first);
            comparePairs(pairs, &columns.x[first], &columns.y[first], &columns.values[first], count,
                         stations[i], rule);
            for (std::size_t j = 0; j < count; ++j) {
                PairSums& sum = sums[static_cast<std::size_t>(pairs.classes[j])];
                sum.distance += pairs.distances[j];
                sum.squares += pairs.squares[j];
                ++sum.pairs;
            }
        }
    }
    sums.resize(classes);
    return sums;
}

}  // namespace velmora::platform
