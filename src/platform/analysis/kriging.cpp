// SPDX-License-Identifier: MIT
#include "platform/analysis/kriging.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <utility>

#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kSetsAtOnce = 64;

// The dual coefficients of every neighbour set: its stations' and the constant.
struct DualCoefficients {
    std::vector<double> values;
    std::size_t stride = 0;
    const double* of(std::size_t set) const { return values.data() + set * stride; }
    std::span<double> of(std::size_t set) { return {values.data() + set * stride, stride}; }
};

class KrigingRaster : public IRaster {
  public:
    KrigingRaster(std::shared_ptr<const NeighbourSets> sets, const Correlation& correlation,
                  DualCoefficients coefficients)
        : sets_(std::move(sets)),
          correlation_(correlation),
          coefficients_(std::move(coefficients)) {}

    const GridGeometry& geometry() const override { return sets_->geometry(); }

    void read(const CellBlock& block, std::span<float> values) const override {
        Places places;
        for (const NeighbourSets::Leaf* leaf : sets_->leaves(block)) {
            for (std::size_t k = 0; k < leaf->sets.size(); ++k) {
                gather(*leaf, k, block, places, values);
                estimate(leaf->sets[k], places, values);
            }
        }
    }

  private:
    static constexpr std::size_t kMostPlaces = 512;

    // Cells that are estimated from one set, with their places in the block that is read.
    struct Places {
        std::array<double, kMostPlaces> x;
        std::array<double, kMostPlaces> y;
        std::array<std::size_t, kMostPlaces> index;
        std::array<double, kMostPlaces> sums;
        std::size_t count = 0;
    };

    // The cells of the leaf within the block that use the leaf's set k; a full buffer is estimated
    // at once.
    void gather(const NeighbourSets::Leaf& leaf, std::size_t k, const CellBlock& block,
                Places& places, std::span<float> values) const {
        places.count = 0;
        const CellBlock& cells = leaf.cells;
        const int firstRow = std::max(cells.row, block.row);
        const int lastRow = std::min(cells.row + cells.rows, block.row + block.rows);
        const int firstColumn = std::max(cells.column, block.column);
        const int lastColumn = std::min(cells.column + cells.columns, block.column + block.columns);
        for (int row = firstRow; row < lastRow; ++row) {
            const double y = geometry().rowCentre(row);
            for (int column = firstColumn; column < lastColumn; ++column) {
                if (!leaf.choice.empty() && leaf.choice[indexIn(cells, column, row)] != k) continue;
                if (places.count == kMostPlaces) {
                    estimate(leaf.sets[k], places, values);
                    places.count = 0;
                }
                places.x[places.count] = geometry().columnCentre(column);
                places.y[places.count] = y;
                places.index[places.count] = indexIn(block, column, row);
                ++places.count;
            }
        }
    }

    static std::size_t indexIn(const CellBlock& block, int column, int row) {
        return static_cast<std::size_t>(row - block.row) * static_cast<std::size_t>(block.columns) +
               static_cast<std::size_t>(column - block.column);
    }

    void estimate(std::size_t set, Places& places, std::span<float> values) const {
        const std::span<const int> stations = sets_->set(set);
        const double* coefficients = coefficients_.of(set);
        std::fill_n(places.sums.begin(), places.count, coefficients[stations.size()]);
        for (std::size_t k = 0; k < stations.size(); ++k) {
            correlation_.add(places.sums.data(), places.x.data(), places.y.data(), places.count,
                             sets_->stations()[static_cast<std::size_t>(stations[k])],
                             coefficients[k]);
        }
        for (std::size_t i = 0; i < places.count; ++i) {
            values[places.index[i]] = static_cast<float>(places.sums[i]);
        }
    }

    std::shared_ptr<const NeighbourSets> sets_;
    Correlation correlation_;
    DualCoefficients coefficients_;
};

}  // namespace

RasterPtr krigedSurface(std::shared_ptr<const NeighbourSets> sets, const SphericalModel& model,
                        const std::vector<double>& values) {
    const Correlation correlation(model);
    DualCoefficients coefficients;
    coefficients.stride = sets->count() > 0 ? sets->set(0).size() + 1 : 0;
    coefficients.values.resize(sets->count() * coefficients.stride);
    std::atomic<bool> singular = false;
    parallelFor(sets->count(), kSetsAtOnce, [&](std::size_t begin, std::size_t end) {
        KrigingSystem system;
        std::vector<Point> places;
        std::vector<double> own;
        for (std::size_t set = begin; set < end && !singular; ++set) {
            places.clear();
            own.clear();
            for (const int station : sets->set(set)) {
                places.push_back(sets->stations()[static_cast<std::size_t>(station)]);
                own.push_back(values[static_cast<std::size_t>(station)]);
            }
            if (!system.factorise(places, correlation)) {
                singular = true;
                return;
            }
            system.solve(own, coefficients.of(set));
        }
    });
    if (singular) return nullptr;
    return std::make_shared<KrigingRaster>(std::move(sets), correlation, std::move(coefficients));
}

}  // namespace velmora::platform
