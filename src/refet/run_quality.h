// SPDX-License-Identifier: MIT
// Looks for what no physics allows and no station bears out in the months of a reference ET run,
// and tells it: a line a month, the data of it in the run's record, and for who asks a grid of
// flags. Changes no number.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "gis/application.h"
#include "gis/quality_note.h"
#include "modelling/run_record.h"
#include "refet/cell_maker.h"
#include "refet/quality_pass.h"
#include "refet/weather_surfaces.h"
#include "settings/run_settings.h"

namespace velmora {

class RunQuality {
  public:
    // The run that is looked at, which outlives it.
    struct Of {
        IApplication& application;
        const RunSettings& settings;
        const GridGeometry& geometry;
        const CellMaker& maker;
        const CellInputs& inputs;  // of the month that is made
        IRasterWorkspace& workspace;
        const WeatherSurfaces& surfaces;
        RunRecord& record;
    };

    explicit RunQuality(const Of& run);

    // A month begins, or begins again. What returns looks at its cells as they are computed, and
    // lives until the next month.
    MonthQuality& watch(int month);
    // Its cells are computed: tells in a warning what is to be told, and records it.
    void tell(int month, bool heatFluxTakenAsZero);
    // Makes the grid of its flags. False when it cannot be made, which is shown as a failure.
    bool save(int month);

  private:
    using Tallies = std::vector<std::pair<QualityFlag, QualityTally>>;
    // A flag of the months' stations, counted once for months with the same.
    struct Stations {
        std::optional<Range> elevation;     // of the stations of all temperatures
        std::optional<Range> ofChance;      // of those whose line is not significant
        std::vector<std::string> byChance;  // the surfaces
        std::vector<Point> places;
    };

    Stations stationsOf(int month) const;
    // The sum over all blocks of the grid of what `tally` says of the cells' elevations.
    template <class Tally>
    QualityTally sum(Tally tally);
    void countDistances(const std::vector<Point>& places);
    QualityTally beyond(const Range& range);
    void mark(const CellTable& table, std::span<double> bits) const;
    std::vector<QualityFlag> estimatedIn(int month) const;
    QualityNote::Flag flagOf(QualityFlag flag, const QualityTally& tally) const;
    QualityNote::Flag flagOfAll(QualityFlag flag) const;
    std::string name(int month) const;

    class FlagsRaster;

    Of run_;
    double noData_;
    std::optional<MonthQuality> month_;
    Stations stations_;                                             // of the month
    std::vector<QualityFlag> ofAllCells_;                           // in the month
    std::vector<std::pair<Range, QualityTally>> elevationsBeyond_;  // as counted before
    std::vector<Point> places_;                                     // those of the distances
    QualityTally distances_;
    std::vector<std::string> toldOfStations_;
};

}  // namespace velmora
