// SPDX-License-Identifier: MIT
#include "platform/analysis/neighbour_search.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace velmora::platform {

namespace {

constexpr int kLeafCells = 8;                // a rectangle this small is not split any more
constexpr std::size_t kMostComparable = 96;  // pairs are compared among so many stations at most

// The rectangle of the cell centres of a block.
Envelope centres(const GridGeometry& g, const CellBlock& b) {
    return {g.columnCentre(b.column), g.rowCentre(b.row + b.rows - 1),
            g.columnCentre(b.column + b.columns - 1), g.rowCentre(b.row)};
}

double squared(double x) { return x * x; }

std::array<double, 4> cornerDistances(const Envelope& e, const Point& p) {
    const double left = squared(p.x - e.xMin);
    const double right = squared(p.x - e.xMax);
    const double bottom = squared(p.y - e.yMin);
    const double top = squared(p.y - e.yMax);
    return {left + bottom, right + bottom, left + top, right + top};
}

bool nearerEverywhere(const std::array<double, 4>& a, const std::array<double, 4>& b) {
    return a[0] < b[0] && a[1] < b[1] && a[2] < b[2] && a[3] < b[3];
}

}  // namespace

NeighbourSearch::NeighbourSearch(const GridGeometry& geometry, std::span<const Point> stations,
                                 int nearest)
    : geometry_(geometry),
      stations_(stations.begin(), stations.end()),
      nearest_(std::min(static_cast<std::size_t>(std::max(1, nearest)), stations_.size())) {}

std::vector<NeighbourLeaf> NeighbourSearch::leaves(const CellBlock& block) const {
    std::vector<int> all(stations_.size());
    std::iota(all.begin(), all.end(), 0);
    std::vector<NeighbourLeaf> found;
    split(block, all, found);
    return found;
}

// The stations that can be among the nearest of a cell of the block: not farther from its centre
// than the last of the nearest there, plus the way across.
std::vector<int> NeighbourSearch::withinReach(const CellBlock& block,
                                              const std::vector<int>& candidates) const {
    const Envelope e = centres(geometry_, block);
    const Point middle{(e.xMin + e.xMax) / 2, (e.yMin + e.yMax) / 2};
    std::vector<double> distances;
    distances.reserve(candidates.size());
    for (const int s : candidates) {
        const Point& p = stations_[static_cast<std::size_t>(s)];
        distances.push_back(std::hypot(p.x - middle.x, p.y - middle.y));
    }
    std::vector<double> sorted = distances;
    const auto last = sorted.begin() + static_cast<std::ptrdiff_t>(nearest_ - 1);
    std::nth_element(sorted.begin(), last, sorted.end());
    const double across = std::hypot(e.width(), e.height());
    const double reach = (*last + across) * (1 + 1e-9) + 1e-9 * geometry_.cellSize;
    std::vector<int> within;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (distances[i] <= reach) within.push_back(candidates[i]);
    }
    return within;
}

// Compares all pairs at the four corners. True when the block needs no splitting.
bool NeighbourSearch::settle(const CellBlock& block, const std::vector<int>& candidates,
                             NeighbourLeaf& leaf) const {
    const Envelope e = centres(geometry_, block);
    std::vector<std::array<double, 4>> corners;
    corners.reserve(candidates.size());
    for (const int s : candidates) {
        corners.push_back(cornerDistances(e, stations_[static_cast<std::size_t>(s)]));
    }
    for (std::size_t a = 0; a < candidates.size(); ++a) {
        std::size_t nearer = 0;
        std::size_t farther = 0;
        for (std::size_t b = 0; b < candidates.size(); ++b) {
            if (nearerEverywhere(corners[b], corners[a])) ++nearer;
            if (nearerEverywhere(corners[a], corners[b])) ++farther;
        }
        if (nearer >= nearest_) continue;  // never among the nearest
        const bool always = candidates.size() - 1 - farther < nearest_;
        (always ? leaf.sure : leaf.open).push_back(candidates[a]);
    }
    if (leaf.sure.size() + leaf.open.size() == nearest_) {
        leaf.sure.insert(leaf.sure.end(), leaf.open.begin(), leaf.open.end());
        std::sort(leaf.sure.begin(), leaf.sure.end());
        leaf.open.clear();
    }
    return leaf.open.empty();
}

void NeighbourSearch::split(const CellBlock& block, const std::vector<int>& candidates,
                            std::vector<NeighbourLeaf>& leaves) const {
    const std::vector<int> near = withinReach(block, candidates);
    const bool small = block.columns <= kLeafCells && block.rows <= kLeafCells;
    NeighbourLeaf leaf;
    leaf.cells = block;
    bool settled = false;
    if (near.size() == nearest_) {
        leaf.sure = near;
        settled = true;
    } else if (near.size() <= kMostComparable) {
        settled = settle(block, near, leaf);
    } else {
        leaf.open = near;
    }
    if (settled || small) {
        leaf.missing = static_cast<int>(nearest_ - leaf.sure.size());
        if (leaf.open.empty()) leaf.missing = 0;
        leaves.push_back(std::move(leaf));
        return;
    }
    const int w = block.columns > kLeafCells ? (block.columns / 2 + 7) / 8 * 8 : block.columns;
    const int h = block.rows > kLeafCells ? (block.rows / 2 + 7) / 8 * 8 : block.rows;
    for (int row = 0; row < block.rows; row += h) {
        for (int column = 0; column < block.columns; column += w) {
            split({block.column + column, block.row + row, std::min(w, block.columns - column),
                   std::min(h, block.rows - row)},
                  near, leaves);
        }
    }
}

}  // namespace velmora::platform
