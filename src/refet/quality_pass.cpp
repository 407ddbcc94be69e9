// SPDX-License-Identifier: MIT
#include "refet/quality_pass.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace velmora {

namespace {

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
    ColumnOfDistances(const CellTable& table, double noData, const GridGeometry& geometry,
                      std::span<const Point> places, double limit, std::span<double> bits)
        : elevations_(table.values(CellField::Elevation)),
          block_(table.block()),
          noData_(noData),
          geometry_(geometry),
          places_(places),
          limit_(limit),
          bits_(bits) {}

    // Of a column of the block.
    void tally(int column, QualityTally& found) const {
        const double x = geometry_.columnCentre(block_.column + column);
        double worst = -kInfinite;
        for (int row = 0; row < block_.rows;) {
            const double distance = nearest(places_, x, geometry_.rowCentre(block_.row + row));
            const bool far = distance > limit_;
            int alike = cellsIn(std::fabs(distance - limit_));
            if (far) alike = std::min(alike, cellsIn(worst - distance));
            const int end = row + std::min(alike, block_.rows - row);
            if (far) count(column, row, end, distance, worst, found);
            row = end;
        }
    }

  private:
    // How many cells, from this one on, are nearer to it than that; this one at least.
    int cellsIn(double distance) const {
        const double cells = std::ceil(distance / geometry_.cellSize);
        return static_cast<int>(std::clamp(cells, 1.0, static_cast<double>(block_.rows)));
    }
    // Only the first of the cells may be worse than those before.
    void count(int column, int row, int end, double distance, double& worst,
               QualityTally& found) const {
        const auto first = static_cast<std::size_t>(column) * static_cast<std::size_t>(block_.rows);
        for (int r = row; r < end; ++r) {
            const std::size_t k = first + static_cast<std::size_t>(r);
            if (elevations_[k] == noData_) continue;
            found.add(r == row ? distance : -kInfinite, block_, k);
            if (r == row) worst = std::max(worst, distance);
            if (!bits_.empty() && bits_[k] != noData_) {
                addBit(bits_[k], QualityFlag::farFromStations);
            }
        }
    }

    std::span<const double> elevations_;
    const CellBlock& block_;
    double noData_;
    const GridGeometry& geometry_;
    std::span<const Point> places_;
    double limit_;
    std::span<double> bits_;
};

}  // namespace

void QualityTally::merge(const QualityTally& other) {
    if (other.cells > 0 &&
        (cells == 0 || other.worst > worst ||
         (other.worst == worst && std::tie(other.column, other.row) < std::tie(column, row)))) {
        worst = other.worst;
        column = other.column;
        row = other.row;
    }
    cells += other.cells;
}

MonthQuality::MonthQuality(double noData, bool fullWeather, const std::optional<Range>& wind)
    : noData_(noData),
      fullWeather_(fullWeather),
      wind_(wind ? roomy(*wind) : Range{-kInfinite, kInfinite}) {}

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

// Calls add(flag, badness) for each flag of the cell.
template <class Add>
void MonthQuality::count(unsigned flags, const Cell& cell, Add add) const {
    using enum QualityFlag;
    const auto addIf = [&](QualityFlag flag, auto badness) {
        if (flags & bitOf(flag)) add(flag, badness());
    };
    addIf(negativeEt, [&] { return -cell.RefET; });
    addIf(maximumBelowMinimum, [&] { return cell.TN - cell.TM; });
    addIf(dewPointAboveMean, [&] { return cell.TD - cell.meanTemperature(); });
    addIf(dewPointAboveMaximum, [&] { return cell.TD - cell.TM; });
    addIf(radiationAboveExtraterrestrial, [&] { return cell.SR - *cell.radiation; });
    addIf(radiationLow, [&] { return -cell.SR / *cell.radiation; });
    addIf(windBeyondStations, [&] { return beyond(cell.WS, wind_); });
}

template <class Body>
void MonthQuality::forEachCell(const CellTable& table,
                               std::span<const std::optional<double>> radiation, Body body) const {
    const auto values = [&](CellField field) { return table.values(field); };
    const auto RefET = values(CellField::RefET);
    const auto TM = values(CellField::TM);
    const auto TN = values(CellField::TN);
    // Without full weather they may be empty, and are not asked for.
    const auto TD = fullWeather_ ? values(CellField::TD) : TM;
    const auto SR = fullWeather_ ? values(CellField::SR) : TM;
    const auto WS = fullWeather_ ? values(CellField::WS) : TM;
    const std::optional<double> none;
    std::size_t row = 0;
    for (std::size_t k = 0; k < table.rowCount(); ++k) {
        const Cell cell{
            RefET[k], TM[k], TN[k], TD[k], SR[k], WS[k], fullWeather_ ? radiation[row] : none};
        if (++row == table.rows()) row = 0;
        body(k, cell, cell.RefET == noData_ ? 0 : flagsOf(cell));
    }
}

void MonthQuality::look(const CellTable& table, std::span<const std::optional<double>> radiation) {
    Tallies tallies;
    std::size_t cells = 0;
    forEachCell(table, radiation, [&](std::size_t k, const Cell& cell, unsigned flags) {
        cells += cell.RefET != noData_ ? 1 : 0;
        if (flags == 0) return;
        count(flags, cell, [&](QualityFlag flag, double badness) {
            tallies[static_cast<std::size_t>(flag)].add(badness, table.block(), k);
        });
    });
    const std::lock_guard lock(mutex_);
    cells_ += cells;
    for (std::size_t f = 0; f < tallies.size(); ++f) tallies_[f].merge(tallies[f]);
}

void MonthQuality::mark(const CellTable& table, std::span<const std::optional<double>> radiation,
                        std::span<double> bits) const {
    forEachCell(table, radiation, [&](std::size_t k, const Cell& cell, unsigned flags) {
        bits[k] = cell.RefET == noData_ ? noData_ : flags;
    });
}

QualityTally tallyElevations(const CellTable& table, double noData, const Range& range) {
    const Range bounds = roomy(range);
    const auto elevations = table.values(CellField::Elevation);
    QualityTally found;
    for (std::size_t k = 0; k < elevations.size(); ++k) {
        const double z = elevations[k];
        if (z == noData || (z >= bounds.low && z <= bounds.high)) continue;
        found.add(beyond(z, range), table.block(), k);
    }
    return found;
}

void addElevationBits(const CellTable& table, double noData, const Range& range, QualityFlag flag,
                      std::span<double> bits) {
    const Range bounds = roomy(range);
    const auto elevations = table.values(CellField::Elevation);
    for (std::size_t k = 0; k < elevations.size(); ++k) {
        const double z = elevations[k];
        if (bits[k] == noData || z == noData || (z >= bounds.low && z <= bounds.high)) continue;
        addBit(bits[k], flag);
    }
}

QualityTally tallyDistances(const CellTable& table, double noData, const GridGeometry& geometry,
                            std::span<const Point> places, double limit, std::span<double> bits) {
    QualityTally found;
    if (places.empty()) return found;
    const ColumnOfDistances columns(table, noData, geometry, places, limit, bits);
    for (int column = 0; column < table.block().columns; ++column) columns.tally(column, found);
    return found;
}

}  // namespace velmora
