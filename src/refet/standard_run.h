// SPDX-License-Identifier: MIT
// Reference ET by the papers' own choices beside that of the method, for who asks for it: grids of
// the same months and cells under names of their own, which no step reads. The choices are those of
// kPaperConventions (equations/conventions.h), and the papers' soil heat flux.
#pragma once

#include "gis/application.h"
#include "modelling/products.h"
#include "modelling/run_record.h"
#include "refet/cell_maker.h"
#include "refet/weather_surfaces.h"
#include "settings/run_settings.h"

namespace velmora {

// "RefETstd_Jul_2", inches of the month.
inline constexpr GridNaming kStandardGrids = {"RefETstd_", true, true};

class StandardRun {
  public:
    // The run beside which it goes, and which outlives it.
    struct Beside {
        IApplication& application;
        const RunSettings& settings;
        const GridGeometry& geometry;
        IRasterWorkspace& workspace;
        const WeatherSurfaces& surfaces;
        const CellMaker& maker;
        RunRecord& record;
    };

    explicit StandardRun(const Beside& run) : run_(run) {}

    // Makes the grid of the month whose cells are made from the inputs, and tells in a notice how
    // its mean differs from that of the method. False when it cannot be made, which is shown as a
    // failure. Throws Cancelled.
    bool make(const CellInputs& inputs, int month);

  private:
    class PapersRefEt;
    // Over the cells where both have a value, inches.
    struct Sums {
        double ours = 0;
        double papers = 0;
        std::size_t cells = 0;
    };

    // The papers' weather: FAO-56 equation 43 for the heat flux where the run has the temperatures
    // of both neighbours (December is January's and January December's), equation 44 where it has
    // the month before alone; else 0, which is told.
    CellInputs papersInputs(const CellInputs& inputs, int month);
    FieldSource heatFlux(int month);
    bool hasTemperatures(int month) const;
    void show(const std::string& name);
    void tellDifference(const Sums& sums, int month);

    Beside run_;
};

}  // namespace velmora
