// SPDX-License-Identifier: MIT
#include "refet/quality_pass.h"

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

constexpr std::size_t kGrain = 8192;  // records that one piece of a loop takes at least
constexpr double kSinglePrecision = 1e-6;
constexpr double kInfinite = std::numeric_limits<double>::infinity();

// The range with room for the rounding of grids.
Range roomy(const Range& range) {
    const double room =
        kSinglePrecision * std::max({1.0, std::fabs(range.low), std::fabs(range.high)});
    return {range.low - room, range.high + room};
}

double beyond(double value, const Range& range) {
    return std::max(range.low - value, value - range.high);
}

double nearest(std::span<const Point> places, double x, double y) {
    double least = kInfinite;
    for (const Point& p : places) {
        least = std::min(least, (p.x - x) * (p.x - x) + (p.y - y) * (p.y - y));
    }
    return std::sqrt(least);
}

void addBit(double& cell, QualityFlag flag) { cell += bitOf(flag); }

// From one cell of a column to the next, no distance changes by more than a cell: most cells need
// no look of their own.
class ColumnOfDistances {
  public:
    ColumnOfDistances(std::span<const double> elevations, double noData,
                      const GridGeometry& geometry, std::span<const Point> places, double limit,
                      std::span<double> bits)
        : elevations_(elevations),
          noData_(noData),
          geometry_(geometry),
          places_(places),
          limit_(limit),
          bits_(bits) {}

    QualityTally tally(int column) const {
        QualityTally found;
        const double x = geometry_.columnCentre(column);
        const auto first =
            static_cast<std::size_t>(column) * static_cast<std::size_t>(geometry_.rows);
        for (int row = 0; row < geometry_.rows;) {
            const double distance = nearest(places_, x, geometry_.rowCentre(row));
            const bool far = distance > limit_;
            int alike = cellsIn(std::fabs(distance - limit_));
            if (far) alike = std::min(alike, cellsIn(found.worst - distance));
            const int end = row + std::min(alike, geometry_.rows - row);
            if (far) count(first, row, end, distance, found);
            row = end;
        }
        return found;
    }

  private:
    // How many cells, from this one on, are nearer to it than that; this one at least.
    int cellsIn(double distance) const {
        const double cells = std::ceil(distance / geometry_.cellSize);
        return static_cast<int>(std::clamp(cells, 1.0, static_cast<double>(geometry_.rows)));
    }
    // Only the first of the cells may be worse than those before.
    void count(std::size_t first, int row, int end, double distance, QualityTally& found) const {
        for (int r = row; r < end; ++r) {
            const std::size_t k = first + static_cast<std::size_t>(r);
            if (elevations_[k] == noData_) continue;
            found.add(r == row ? distance : -kInfinite, k);
            if (!bits_.empty() && bits_[k] != noData_) {
                addBit(bits_[k], QualityFlag::farFromStations);
            }
        }
    }

    std::span<const double> elevations_;
    double noData_;
    const GridGeometry& geometry_;
    std::span<const Point> places_;
    double limit_;
    std::span<double> bits_;
};

}  // namespace

void QualityTally::merge(const QualityTally& other) {
    if (other.cells > 0 &&
        (cells == 0 || other.worst > worst || (other.worst == worst && other.record < record))) {
        worst = other.worst;
        record = other.record;
    }
    cells += other.cells;
}

MonthQuality::MonthQuality(const CellTable& table, std::size_t rows, double noData,
                           bool fullWeather, const std::optional<Range>& wind,
                           std::span<double> bits)
    : table_(table),
      rows_(rows),
      noData_(noData),
      fullWeather_(fullWeather),
      wind_(wind ? roomy(*wind) : Range{-kInfinite, kInfinite}),
      bits_(bits) {}

// Conditions are added up rather than branched on: they change from cell to cell.
inline unsigned MonthQuality::flagsOf(const Cell& cell) const {
    using enum QualityFlag;
    const auto flagIf = [](bool holds, QualityFlag flag) {
        return static_cast<unsigned>(holds) * bitOf(flag);
    };
    unsigned flags = flagIf(cell.RefET < 0, negativeEt);
    flags |= flagIf(cell.TM < cell.TN, maximumBelowMinimum);
    if (!fullWeather_) return flags;
    flags |= flagIf(cell.TD > cell.meanTemperature(), dewPointAboveMean);
    flags |= flagIf(cell.TD > cell.TM, dewPointAboveMaximum);
    flags |= flagIf((cell.WS < wind_.low) | (cell.WS > wind_.high), windBeyondStations);
    if (!cell.radiation) return flags;
    const double Ra = *cell.radiation;
    flags |= flagIf(cell.SR > Ra, radiationAboveExtraterrestrial);
    return flags | flagIf(cell.SR < kLeastRadiationShare * Ra, radiationLow);
}

void MonthQuality::count(unsigned flags, const Cell& cell, std::size_t record,
                         Tallies& tallies) const {
    using enum QualityFlag;
    const auto add = [&](QualityFlag flag, auto badness) {
        if (flags & bitOf(flag)) tallies[static_cast<std::size_t>(flag)].add(badness(), record);
    };
    add(negativeEt, [&] { return -cell.RefET; });
    add(maximumBelowMinimum, [&] { return cell.TN - cell.TM; });
    add(dewPointAboveMean, [&] { return cell.TD - cell.meanTemperature(); });
    add(dewPointAboveMaximum, [&] { return cell.TD - cell.TM; });
    add(radiationAboveExtraterrestrial, [&] { return cell.SR - *cell.radiation; });
    add(radiationLow, [&] { return -cell.SR / *cell.radiation; });
    add(windBeyondStations, [&] { return beyond(cell.WS, wind_); });
}

void MonthQuality::look(std::size_t begin, std::size_t end,
                        std::span<const std::optional<double>> radiation) {
    const auto values = [&](CellField field) { return table_.values(field); };
    const auto RefET = values(CellField::RefET);
    const auto TM = values(CellField::TM);
    const auto TN = values(CellField::TN);
    // Without full weather they may be empty, and are not asked for.
    const auto TD = fullWeather_ ? values(CellField::TD) : TM;
    const auto SR = fullWeather_ ? values(CellField::SR) : TM;
    const auto WS = fullWeather_ ? values(CellField::WS) : TM;
    const std::optional<double> none;
    Tallies tallies;
    std::size_t cells = 0;
    std::size_t row = begin % rows_;
    for (std::size_t k = begin; k < end; ++k) {
        const Cell cell{
            RefET[k], TM[k], TN[k], TD[k], SR[k], WS[k], fullWeather_ ? radiation[row] : none};
        if (++row == rows_) row = 0;
        const bool known = cell.RefET != noData_;
        const unsigned flags = known ? flagsOf(cell) : 0;
        cells += known ? 1 : 0;
        if (!bits_.empty()) bits_[k] = known ? flags : noData_;
        if (flags != 0) count(flags, cell, k, tallies);
    }
    const std::lock_guard lock(mutex_);
    cells_ += cells;
    for (std::size_t f = 0; f < tallies.size(); ++f) tallies_[f].merge(tallies[f]);
}

QualityTally tallyElevations(IParallelLoop& loop, std::span<const double> elevations, double noData,
                             const Range& range) {
    const Range bounds = roomy(range);
    QualityTally all;
    std::mutex mutex;
    loop.run(elevations.size(), kGrain, [&](std::size_t begin, std::size_t end) {
        QualityTally found;
        for (std::size_t k = begin; k < end; ++k) {
            const double z = elevations[k];
            if (z == noData || (z >= bounds.low && z <= bounds.high)) continue;
            found.add(beyond(z, range), k);
        }
        const std::lock_guard lock(mutex);
        all.merge(found);
    });
    return all;
}

void addElevationBits(std::span<const double> elevations, double noData, const Range& range,
                      QualityFlag flag, std::span<double> bits) {
    const Range bounds = roomy(range);
    for (std::size_t k = 0; k < elevations.size(); ++k) {
        const double z = elevations[k];
        if (bits[k] == noData || z == noData || (z >= bounds.low && z <= bounds.high)) continue;
        addBit(bits[k], flag);
    }
}

QualityTally tallyDistances(IParallelLoop& loop, std::span<const double> elevations, double noData,
                            const GridGeometry& geometry, std::span<const Point> places,
                            double limit, std::span<double> bits) {
    QualityTally all;
    if (places.empty()) return all;
    std::mutex mutex;
    const ColumnOfDistances columns(elevations, noData, geometry, places, limit, bits);
    loop.run(static_cast<std::size_t>(geometry.columns), 16,
             [&](std::size_t begin, std::size_t end) {
                 QualityTally found;
                 for (std::size_t c = begin; c < end; ++c)
                     found.merge(columns.tally(static_cast<int>(c)));
                 const std::lock_guard lock(mutex);
                 all.merge(found);
             });
    return all;
}

}  // namespace velmora
