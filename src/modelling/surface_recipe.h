// SPDX-License-Identifier: MIT
// How a quantity of the weather stations becomes a grid. A recipe is declared once, by the step
// whose surface it is; the surface, its diagnosis and the check of the inputs are made from it.
#pragma once

#include <string>

#include "gis/analysis.h"
#include "gis/linear_trend.h"
#include "modelling/station_interpolation.h"

namespace velmora {

// Station values that take part: between the limits, the lower one included when it counts.
struct ValidRange {
    double low = 0;
    double high = 0;
    bool lowCounts = false;

    bool holds(double value) const;
    std::string clause(const std::string& qualified) const;  // "[w.P_Jan] > 0 AND [w.P_Jan] < 1000"
    std::string limits() const;                              // "above 0 and below 1000"
    std::string text() const;                                // "between 0 and 1000"
};

// What is interpolated is a station's value as it stands, what a straight line over elevation
// leaves of it, or its ratio to a reference grid.
enum class Treatment { none, detrended, ratio };

struct SurfaceRecipe {
    std::string quantity;  // the beginning of its fields of the weather table: "TM_"
    std::string grid;      // the beginning of the names of its grids: "PPT_"
    std::string unit;      // of the stations' values: "inches per month"
    ValidRange range;      // of the values, or of their ratios
    Treatment treatment = Treatment::none;
    Estimator estimator = Estimator::inverseDistance;
    std::string variable;         // what the map algebra calls the interpolated raster: "T"
    bool fromFahrenheit = false;  // the grid holds degrees Celsius
    bool notNegative = false;     // negative estimates count as 0
    bool zerosCount = false;      // a station that holds 0 and takes no part has an error as well
    double referenceScale = 1;    // units of the reference grid in a unit of the stations
    std::string referenceRaster;  // what the map algebra calls the reference grid

    bool detrended() const { return treatment == Treatment::detrended; }
    bool isRatio() const { return treatment == Treatment::ratio; }

    // The ratio of a field to the reference value in another: "2540 * [w.P_Jan] / [s.RefPPT]".
    std::string ratioExpression(const std::string& field, const std::string& reference) const;
    // "between 0 and 1000", "a ratio of 0 to below 1000"
    std::string rangeText() const;

    // The two forms of the way back from what was interpolated. The grid, in the unit that steps
    // read; the DEM in metres, or the reference grid, must be bound in `algebra`.
    RasterPtr back(IMapAlgebraOp& algebra, const RasterPtr& interpolated,
                   const LinearTrend& trend) const;
    // The value at one place, in the unit of the stations; `elevation` in metres, `reference` that
    // of the reference grid there.
    double backAt(double interpolated, const LinearTrend& trend, double elevation,
                  double reference) const;
};

// The map algebra that puts the trend back: "[name] + a + b * [DEM] ", the DEM in metres.
std::string retrendExpression(const std::string& name, const LinearTrend& trend);

}  // namespace velmora
