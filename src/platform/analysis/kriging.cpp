// SPDX-License-Identifier: MIT
#include "platform/analysis/kriging.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

namespace {

// The dual coefficients of every neighbour set: its stations' and the constant.
struct DualCoefficients {
    std::vector<double> values;
    std::size_t stride = 0;
    const double* of(std::size_t set) const { return values.data() + set * stride; }
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

KrigingPlan::KrigingPlan(std::shared_ptr<const NeighbourSets> sets, const SphericalModel& model)
    : sets_(std::move(sets)), model_(model), correlation_(model) {
    std::vector<std::vector<KrigingSystem>> pieces(sets_->count());
    parallelFor(sets_->count(), 64, [&](std::size_t begin, std::size_t end) {
        for (std::size_t set = begin; set < end; ++set) {
            std::vector<Point> stations;
            for (const int s : sets_->set(set)) {
                stations.push_back(sets_->stations()[static_cast<std::size_t>(s)]);
            }
            pieces[set].emplace_back(stations, correlation_);
        }
    });
    systems_.reserve(pieces.size());
    for (auto& piece : pieces) systems_.push_back(std::move(piece.front()));
    singular_ = std::ranges::any_of(systems_, &KrigingSystem::singular);
}

std::size_t KrigingPlan::bytes() const {
    const std::size_t unknowns = sets_->count() > 0 ? sets_->set(0).size() + 1 : 0;
    return systems_.size() * (unknowns * unknowns * sizeof(double) + sizeof(KrigingSystem));
}

RasterPtr KrigingPlan::surface(const std::vector<double>& values) const {
    DualCoefficients coefficients;
    coefficients.stride = sets_->count() > 0 ? sets_->set(0).size() + 1 : 0;
    coefficients.values.resize(sets_->count() * coefficients.stride);
    parallelFor(sets_->count(), 256, [&](std::size_t begin, std::size_t end) {
        std::vector<double> own;
        for (std::size_t set = begin; set < end; ++set) {
            own.clear();
            for (const int s : sets_->set(set)) own.push_back(values[static_cast<std::size_t>(s)]);
            systems_[set].solve(
                own, {coefficients.values.data() + set * coefficients.stride, coefficients.stride});
        }
    });
    return std::make_shared<KrigingRaster>(sets_, correlation_, std::move(coefficients));
}

}  // namespace velmora::platform
