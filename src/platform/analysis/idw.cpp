// SPDX-License-Identifier: MIT
#include "platform/analysis/idw.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <utility>

#include "platform/threads/per_processor.h"

namespace velmora::platform {

namespace {

// sums[i] += w0[i] v0 + ... taken one station after the other.
VELMORA_PER_PROCESSOR
void addFour(double* sums, const double* weights, std::size_t stride, const double* values,
             std::size_t count) {
    const double* w0 = weights;
    const double* w1 = weights + stride;
    const double* w2 = weights + 2 * stride;
    const double* w3 = weights + 3 * stride;
    for (std::size_t i = 0; i < count; ++i) {
        double sum = sums[i];
        sum += w0[i] * values[0];
        sum += w1[i] * values[1];
        sum += w2[i] * values[2];
        sum += w3[i] * values[3];
        sums[i] = sum;
    }
}

VELMORA_PER_PROCESSOR
void addOne(double* sums, const double* weights, double value, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) sums[i] += weights[i] * value;
}

VELMORA_PER_PROCESSOR
void squaredDistances(double* out, const double* x, const double* y, Point station,
                      std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const double dx = x[i] - station.x;
        const double dy = y[i] - station.y;
        out[i] = dx * dx + dy * dy;
    }
}

VELMORA_PER_PROCESSOR
void divide(double* values, const double* divisors, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) values[i] /= divisors[i];
}

class IdwRaster : public IRaster {
  public:
    IdwRaster(std::shared_ptr<const IdwPlan> plan, std::vector<double> values)
        : plan_(std::move(plan)), values_(std::move(values)) {}

    const GridGeometry& geometry() const override { return plan_->geometry(); }

    void read(const CellBlock& block, std::span<float> cells) const override {
        for (const BlockWeights::Leaf& leaf : plan_->weights(block).leaves) {
            readLeaf(leaf, static_cast<std::size_t>(block.columns), cells);
        }
    }

  private:
    static constexpr std::size_t kChunk = 256;

    void readLeaf(const BlockWeights::Leaf& leaf, std::size_t blockColumns,
                  std::span<float> cells) const {
        const std::size_t count = leaf.cells.cells();
        std::vector<double> values;
        for (const int s : leaf.stations) values.push_back(values_[static_cast<std::size_t>(s)]);
        std::array<double, kChunk> sums;
        for (std::size_t first = 0; first < count; first += kChunk) {
            const std::size_t n = std::min(kChunk, count - first);
            std::fill_n(sums.begin(), n, 0.0);
            std::size_t k = 0;
            for (; k + 4 <= values.size(); k += 4) {
                addFour(sums.data(), leaf.weights.data() + k * count + first, count,
                        values.data() + k, n);
            }
            for (; k < values.size(); ++k) {
                addOne(sums.data(), leaf.weights.data() + k * count + first, values[k], n);
            }
            store(leaf.cells, first, {sums.data(), n}, blockColumns, cells);
        }
    }

    // Puts the sums of the leaf's cells from `first` on in their places of the block, row by row.
    static void store(const CellBlock& leaf, std::size_t first, std::span<const double> sums,
                      std::size_t blockColumns, std::span<float> cells) {
        const auto columns = static_cast<std::size_t>(leaf.columns);
        for (std::size_t done = 0; done < sums.size();) {
            const std::size_t row = (first + done) / columns;
            const std::size_t column = (first + done) % columns;
            const std::size_t n = std::min(columns - column, sums.size() - done);
            float* to = cells.data() + (static_cast<std::size_t>(leaf.row) + row) * blockColumns +
                        static_cast<std::size_t>(leaf.column) + column;
            for (std::size_t i = 0; i < n; ++i) to[i] = static_cast<float>(sums[done + i]);
            done += n;
        }
    }

    std::shared_ptr<const IdwPlan> plan_;
    std::vector<double> values_;
};

// Sets the weights of the stations that a cell does not take to 0.
class CellChoice {
  public:
    CellChoice(const NeighbourLeaf& leaf, const std::vector<int>& stations)
        : missing_(leaf.missing) {
        for (std::size_t k = 0; k < stations.size(); ++k) {
            if (std::binary_search(leaf.open.begin(), leaf.open.end(), stations[k])) {
                rows_.push_back(k);
            }
        }
    }

    // `distances` holds the squared distances of all stations of the leaf, station by station;
    // those not taken become infinite.
    void choose(std::vector<double>& distances, std::size_t cells) {
        for (std::size_t c = 0; c < cells; ++c) {
            order_.clear();
            for (const std::size_t k : rows_) order_.emplace_back(distances[k * cells + c], k);
            const auto taken = order_.begin() + missing_;
            std::nth_element(order_.begin(), taken, order_.end());
            for (auto it = taken; it != order_.end(); ++it) {
                distances[it->second * cells + c] = HUGE_VAL;
            }
        }
    }

  private:
    std::ptrdiff_t missing_;
    std::vector<std::size_t> rows_;  // the places of the open stations among the leaf's
    std::vector<std::pair<double, std::size_t>> order_;
};

// Distances to weights: d^-power, all on the first station where the distance is 0.
void toWeights(std::vector<double>& d, std::size_t stations, std::size_t cells, double power) {
    if (power == 2) {
        for (double& value : d) value = 1 / value;
    } else {
        for (double& value : d) value = std::pow(value, -power / 2);
    }
    std::vector<double> sums(cells, 0.0);
    for (std::size_t k = 0; k < stations; ++k) addOne(sums.data(), &d[k * cells], 1.0, cells);
    for (std::size_t c = 0; c < cells; ++c) {
        if (std::isfinite(sums[c])) continue;
        bool found = false;
        for (std::size_t k = 0; k < stations; ++k) {
            double& weight = d[k * cells + c];
            const bool here = !found && std::isinf(weight);
            weight = here ? 1 : 0;
            found = found || here;
        }
        sums[c] = 1;
    }
    for (std::size_t k = 0; k < stations; ++k) divide(&d[k * cells], sums.data(), cells);
}

unsigned long long nextSerial() {
    static std::atomic<unsigned long long> last{0};
    return ++last;
}

struct RecentBlock {
    unsigned long long plan = 0;
    unsigned long long used = 0;
    CellBlock block;
    BlockWeights weights;
};

}  // namespace

IdwPlan::IdwPlan(const GridGeometry& geometry, std::span<const Point> stations, double power,
                 int nearest)
    : search_(geometry, stations, nearest),
      power_(power),
      nearest_(nearest),
      serial_(nextSerial()) {}

bool IdwPlan::serves(const GridGeometry& geometry, std::span<const Point> stations, double power,
                     int nearest) const {
    return power == power_ && nearest == nearest_ && geometry == search_.geometry() &&
           std::ranges::equal(stations, search_.stations());
}

const BlockWeights& IdwPlan::weights(const CellBlock& block) const {
    thread_local std::array<RecentBlock, 8> recent;
    thread_local unsigned long long clock = 0;
    RecentBlock* oldest = recent.data();
    for (RecentBlock& entry : recent) {
        if (entry.plan == serial_ && entry.block == block) {
            entry.used = ++clock;
            return entry.weights;
        }
        if (entry.used < oldest->used) oldest = &entry;
    }
    oldest->plan = 0;
    oldest->weights = compute(block);
    oldest->plan = serial_;
    oldest->block = block;
    oldest->used = ++clock;
    return oldest->weights;
}

BlockWeights IdwPlan::compute(const CellBlock& block) const {
    BlockWeights result;
    for (const NeighbourLeaf& leaf : search_.leaves(block)) {
        result.leaves.push_back(weigh(leaf, block));
    }
    return result;
}

BlockWeights::Leaf IdwPlan::weigh(const NeighbourLeaf& leaf, const CellBlock& block) const {
    BlockWeights::Leaf result;
    result.cells = leaf.cells;
    result.cells.column -= block.column;
    result.cells.row -= block.row;
    result.stations = leaf.sure;
    result.stations.insert(result.stations.end(), leaf.open.begin(), leaf.open.end());
    std::sort(result.stations.begin(), result.stations.end());

    const std::size_t cells = leaf.cells.cells();
    std::vector<double> x;
    std::vector<double> y;
    x.reserve(cells);
    y.reserve(cells);
    const GridGeometry& geometry = search_.geometry();
    for (int r = 0; r < leaf.cells.rows; ++r) {
        for (int c = 0; c < leaf.cells.columns; ++c) {
            x.push_back(geometry.columnCentre(leaf.cells.column + c));
            y.push_back(geometry.rowCentre(leaf.cells.row + r));
        }
    }
    result.weights.resize(result.stations.size() * cells);
    for (std::size_t k = 0; k < result.stations.size(); ++k) {
        squaredDistances(&result.weights[k * cells], x.data(), y.data(),
                         search_.stations()[static_cast<std::size_t>(result.stations[k])], cells);
    }
    if (!leaf.open.empty()) CellChoice(leaf, result.stations).choose(result.weights, cells);
    toWeights(result.weights, result.stations.size(), cells, power_);
    return result;
}

RasterPtr idwRaster(std::shared_ptr<const IdwPlan> plan, std::vector<double> values) {
    return std::make_shared<IdwRaster>(std::move(plan), std::move(values));
}

}  // namespace velmora::platform
