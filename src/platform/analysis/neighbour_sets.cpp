// SPDX-License-Identifier: MIT
#include "platform/analysis/neighbour_sets.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

namespace {

struct StationsHash {
    std::size_t operator()(const std::vector<int>& stations) const {
        std::uint64_t hash = 14695981039346656037ULL;
        for (const int station : stations) {
            hash = (hash ^ static_cast<std::uint64_t>(station)) * 1099511628211ULL;
        }
        return static_cast<std::size_t>(hash ^ (hash >> 29U));
    }
};

// Sets of stations, numbered as they come.
class SetRegister {
  public:
    std::uint32_t number(const std::vector<int>& stations) {
        const auto next = static_cast<std::uint32_t>(sets_.size());
        const auto [place, fresh] = numbers_.emplace(stations, next);
        if (fresh) sets_.push_back(stations);
        return place->second;
    }
    std::vector<std::vector<int>>& sets() { return sets_; }

  private:
    std::unordered_map<std::vector<int>, std::uint32_t, StationsHash> numbers_;
    std::vector<std::vector<int>> sets_;
};

// Chooses the set of each cell of a leaf whose stations are not all settled.
class OpenLeaf {
  public:
    OpenLeaf(const NeighbourLeaf& leaf, const NeighbourSearch& search, SetRegister& sets)
        : leaf_(leaf), search_(search), sets_(sets) {}

    NeighbourSets::Leaf choose() {
        NeighbourSets::Leaf result{leaf_.cells, {}, {}};
        const GridGeometry& geometry = search_.geometry();
        for (int r = 0; r < leaf_.cells.rows; ++r) {
            for (int c = 0; c < leaf_.cells.columns; ++c) {
                const std::uint32_t set = setAt({geometry.columnCentre(leaf_.cells.column + c),
                                                 geometry.rowCentre(leaf_.cells.row + r)});
                auto place = std::ranges::find(result.sets, set);
                if (place == result.sets.end()) place = result.sets.insert(place, set);
                result.choice.push_back(static_cast<std::uint8_t>(place - result.sets.begin()));
            }
        }
        if (result.sets.size() == 1) result.choice.clear();
        return result;
    }

  private:
    std::uint32_t setAt(const Point& centre) {
        order_.clear();
        for (const int s : leaf_.open) {
            const Point& station = search_.stations()[static_cast<std::size_t>(s)];
            const double dx = centre.x - station.x;
            const double dy = centre.y - station.y;
            order_.emplace_back(dx * dx + dy * dy, s);
        }
        const auto taken = order_.begin() + leaf_.missing;
        std::nth_element(order_.begin(), taken, order_.end());
        chosen_.clear();
        for (auto it = order_.begin(); it != taken; ++it) chosen_.push_back(it->second);
        std::sort(chosen_.begin(), chosen_.end());
        if (chosen_ != lastChosen_) {  // cells beside each other mostly choose alike
            lastChosen_ = chosen_;
            std::vector<int> all = leaf_.sure;
            all.insert(all.end(), chosen_.begin(), chosen_.end());
            std::sort(all.begin(), all.end());
            lastSet_ = sets_.number(all);
        }
        return lastSet_;
    }

    const NeighbourLeaf& leaf_;
    const NeighbourSearch& search_;
    SetRegister& sets_;
    std::vector<std::pair<double, int>> order_;
    std::vector<int> chosen_;
    std::vector<int> lastChosen_;
    std::uint32_t lastSet_ = 0;
};

}  // namespace

NeighbourSets::NeighbourSets(const GridGeometry& geometry, std::span<const Point> stations,
                             int nearest)
    : search_(geometry, stations, nearest), nearest_(nearest), tiles_(geometry) {
    leaves_.resize(tiles_.count());

    // Each tile numbers its own sets; then all sets are numbered tile after tile.
    std::vector<std::vector<std::vector<int>>> setsOfTile(leaves_.size());
    parallelFor(leaves_.size(), 4, [&](std::size_t begin, std::size_t end) {
        for (std::size_t tile = begin; tile < end; ++tile) {
            SetRegister sets;
            for (const NeighbourLeaf& leaf : search_.leaves(tiles_.block(tile, geometry))) {
                leaves_[tile].push_back(leaf.open.empty()
                                            ? Leaf{leaf.cells, {sets.number(leaf.sure)}, {}}
                                            : OpenLeaf(leaf, search_, sets).choose());
            }
            setsOfTile[tile] = std::move(sets.sets());
        }
    });
    SetRegister all;
    for (std::size_t tile = 0; tile < leaves_.size(); ++tile) {
        std::vector<std::uint32_t> numbers;
        for (const auto& set : setsOfTile[tile]) numbers.push_back(all.number(set));
        for (Leaf& leaf : leaves_[tile]) {
            for (std::uint32_t& set : leaf.sets) set = numbers[set];
        }
    }
    sets_ = std::move(all.sets());
}

bool NeighbourSets::serves(const GridGeometry& geometry, std::span<const Point> stations,
                           int nearest) const {
    return nearest == nearest_ && geometry == search_.geometry() &&
           std::ranges::equal(stations, search_.stations());
}

std::vector<const NeighbourSets::Leaf*> NeighbourSets::leaves(const CellBlock& block) const {
    std::vector<const Leaf*> found;
    const int lastRow = (block.row + block.rows - 1) / kTileRows;
    const int lastColumn = (block.column + block.columns - 1) / kTileColumns;
    for (int r = block.row / kTileRows; r <= lastRow; ++r) {
        for (int c = block.column / kTileColumns; c <= lastColumn; ++c) {
            const auto tile =
                static_cast<std::size_t>(r) * static_cast<std::size_t>(tiles_.across) +
                static_cast<std::size_t>(c);
            for (const Leaf& leaf : leaves_[tile]) {
                const CellBlock& cells = leaf.cells;
                if (cells.row < block.row + block.rows && cells.row + cells.rows > block.row &&
                    cells.column < block.column + block.columns &&
                    cells.column + cells.columns > block.column) {
                    found.push_back(&leaf);
                }
            }
        }
    }
    return found;
}

}  // namespace velmora::platform
