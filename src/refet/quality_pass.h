// SPDX-License-Identifier: MIT
// Counts the flags of a month's cells (modelling/quality.h), block by block: those of the weather
// while reference ET is computed and the block is still at hand; what elevation and place alone
// decide once for months with the same stations. No count depends on how many threads there are.
#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "gis/grid_geometry.h"
#include "modelling/quality.h"
#include "modelling/surface_ground.h"
#include "refet/cell_table.h"

namespace velmora {

// How many cells have a flag, and where it is worst: the first of those cells in the order of the
// records, column by column.
struct QualityTally {
    std::size_t cells = 0;
    double worst = -std::numeric_limits<double>::infinity();  // the greater the worse
    int column = 0;                                           // of the grid
    int row = 0;

    // A record of the block, after all before it.
    void add(double badness, const CellBlock& block, std::size_t record) {
        ++cells;
        if (badness <= worst) return;
        worst = badness;
        const auto rows = static_cast<std::size_t>(block.rows);
        column = block.column + static_cast<int>(record / rows);
        row = block.row + static_cast<int>(record % rows);
    }
    void merge(const QualityTally& other);
};

// The flags that need the weather of the month: reference ET to wind.
class MonthQuality {
  public:
    // Methods without `fullWeather` have temperatures alone. `wind` is the range of the stations.
    MonthQuality(double noData, bool fullWeather, const std::optional<Range>& wind);

    // Counts the records of a block, whose reference ET has been computed. `radiation` is the
    // extraterrestrial radiation by rows of the block, unused without full weather. Blocks may be
    // looked at at once.
    void look(const CellTable& table, std::span<const std::optional<double>> radiation);

    // The bits of each of such records, or no data, into `bits`.
    void mark(const CellTable& table, std::span<const std::optional<double>> radiation,
              std::span<double> bits) const;

    std::size_t cells() const { return cells_; }  // with data
    const QualityTally& tally(QualityFlag flag) const {
        return tallies_[static_cast<std::size_t>(flag)];
    }

  private:
    using Tallies = std::array<QualityTally, kQualityFlags>;
    // What is needed of a record.
    struct Cell {
        double RefET, TM, TN, TD, SR, WS;
        const std::optional<double>& radiation;
        double meanTemperature() const { return (TM + TN) / 2; }
    };
    // Calls body(record, cell, its flags) for every record, with no flags where there is no data.
    template <class Body>
    void forEachCell(const CellTable& table, std::span<const std::optional<double>> radiation,
                     Body body) const;
    unsigned flagsOf(const Cell& cell) const;
    template <class Add>
    void count(unsigned flags, const Cell& cell, Add add) const;

    double noData_;
    bool fullWeather_;
    Range wind_;
    std::mutex mutex_;
    std::size_t cells_ = 0;
    Tallies tallies_;
};

// Elevations of a block's records outside the range; worst by metres. `bits` get the bit of the
// flag.
QualityTally tallyElevations(const CellTable& table, double noData, const Range& range);
void addElevationBits(const CellTable& table, double noData, const Range& range, QualityFlag flag,
                      std::span<double> bits);

// Cells of a block with an elevation whose centre is farther than `limit` from each of the places;
// worst by the distance, in the unit of the geometry.
QualityTally tallyDistances(const CellTable& table, double noData, const GridGeometry& geometry,
                            std::span<const Point> places, double limit,
                            std::span<double> bits = {});

}  // namespace velmora
