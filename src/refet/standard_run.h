// SPDX-License-Identifier: MIT
// Reference ET by the papers' own choices beside that of the method, for who asks for it: grids of
// the same months and cells under names of their own, which no step reads. The choices are those of
// kPaperConventions (equations/conventions.h), and the papers' soil heat flux.
#pragma once

#include "gis/application.h"
#include "modelling/products.h"
#include "modelling/run_record.h"
#include "refet/cell_table.h"
#include "refet/refet_pass.h"
#include "refet/weather_surfaces.h"
#include "settings/run_settings.h"

namespace velmora {

// "RefETstd_Jul_2", inches of the month.
inline constexpr GridNaming kStandardGrids = {"RefETstd_", true, true};

// Bytes per cell that it needs beside the run's own.
constexpr double kStandardBytesPerCell = 40;

class StandardRun {
  public:
    // The run beside which it goes, and which outlives it.
    struct Beside {
        IApplication& application;
        const RunSettings& settings;
        const GridGeometry& geometry;
        IRasterWorkspace& workspace;
        const WeatherSurfaces& surfaces;
        const ElevationParts& elevationParts;
        double noData;
        RunRecord& record;
    };

    explicit StandardRun(const Beside& run) : run_(run) {}

    // Makes the grid of the month whose weather and reference ET the cells hold, and tells in a
    // notice how its mean differs. The cells are left as they were. False when it cannot be made,
    // which is shown as a failure. Throws Cancelled.
    bool make(CellTable& cells, int month);

  private:
    // FAO-56 equation 43 where the run has the temperatures of both neighbours (December is
    // January's and January December's), equation 44 where it has the month before alone; else 0,
    // which is told.
    void setHeatFlux(CellTable& cells, int month);
    bool hasTemperatures(int month) const;
    void calculate(CellTable& cells, int month);
    void save(const CellTable& cells, const std::string& name);
    void tellDifference(const CellTable& cells, std::span<const double> ours, int month);

    Beside run_;
};

}  // namespace velmora
