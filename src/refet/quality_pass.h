// SPDX-License-Identifier: MIT
// Counts the flags of a month's cells (modelling/quality.h). What differs from cell to cell and
// month to month is looked at piece by piece while reference ET is computed and the piece is still
// at hand; what elevation and place alone decide is counted once for months with the same stations.
// No count depends on how many threads there are.
#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "gis/grid_geometry.h"
#include "gis/parallel.h"
#include "modelling/quality.h"
#include "modelling/surface_ground.h"
#include "refet/cell_table.h"

namespace velmora {

// How many records have a flag, and the first of those where it is worst.
struct QualityTally {
    std::size_t cells = 0;
    double worst = -std::numeric_limits<double>::infinity();  // the greater the worse
    std::size_t record = 0;

    void add(double badness, std::size_t at) {
        ++cells;
        if (badness > worst) {
            worst = badness;
            record = at;
        }
    }
    void merge(const QualityTally& other);
};

// The flags that need the weather of the month: reference ET to wind.
class MonthQuality {
  public:
    // Methods without `fullWeather` have temperatures alone. `wind` is the range of the stations.
    // `bits`, when it is not empty, gets the bits of each record, or `noData`.
    MonthQuality(const CellTable& table, std::size_t rows, double noData, bool fullWeather,
                 const std::optional<Range>& wind, std::span<double> bits = {});

    // Looks at the records begin ... end - 1, whose reference ET has been computed. `radiation` is
    // the extraterrestrial radiation by rows of the grid, unused without full weather. Pieces may
    // be looked at at once.
    void look(std::size_t begin, std::size_t end, std::span<const std::optional<double>> radiation);

    std::size_t cells() const { return cells_; }  // with data
    const QualityTally& tally(QualityFlag flag) const {
        return tallies_[static_cast<std::size_t>(flag)];
    }

  private:
    using Tallies = std::array<QualityTally, kQualityFlags>;
    // A record and what is needed of it.
    struct Cell {
        double RefET, TM, TN, TD, SR, WS;
        const std::optional<double>& radiation;
        double meanTemperature() const { return (TM + TN) / 2; }
    };
    unsigned flagsOf(const Cell& cell) const;
    void count(unsigned flags, const Cell& cell, std::size_t record, Tallies& tallies) const;

    const CellTable& table_;
    std::size_t rows_;
    double noData_;
    bool fullWeather_;
    Range wind_;
    std::span<double> bits_;
    std::mutex mutex_;
    std::size_t cells_ = 0;
    Tallies tallies_;
};

// Elevations outside the range; worst by metres. `bits` get the bit of the flag.
QualityTally tallyElevations(IParallelLoop& loop, std::span<const double> elevations, double noData,
                             const Range& range);
void addElevationBits(std::span<const double> elevations, double noData, const Range& range,
                      QualityFlag flag, std::span<double> bits);

// Cells with an elevation whose centre is farther than `limit` from each of the places; worst by
// the distance, in the unit of the geometry.
QualityTally tallyDistances(IParallelLoop& loop, std::span<const double> elevations, double noData,
                            const GridGeometry& geometry, std::span<const Point> places,
                            double limit, std::span<double> bits = {});

}  // namespace velmora
