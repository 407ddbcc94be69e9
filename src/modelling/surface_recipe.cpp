// SPDX-License-Identifier: MIT
#include "modelling/surface_recipe.h"

#include <algorithm>

#include "gis/numbers.h"

namespace velmora {

bool ValidRange::holds(double value) const {
    return (value > low || (lowCounts && value == low)) && value < high;
}

std::string ValidRange::clause(const std::string& qualified) const {
    const std::string field = "[" + qualified + "]";
    return field + (lowCounts ? " >= " : " > ") + numberText(low) + " AND " + field + " < " +
           numberText(high);
}

std::string ValidRange::limits() const {
    return (lowCounts ? "at least " : "above ") + numberText(low) + " and below " +
           numberText(high);
}

std::string ValidRange::text() const {
    return lowCounts ? numberText(low) + " to below " + numberText(high)
                     : "between " + numberText(low) + " and " + numberText(high);
}

std::string SurfaceRecipe::ratioExpression(const std::string& field,
                                           const std::string& reference) const {
    return numberText(referenceScale) + " * [" + field + "] / [" + reference + "]";
}

std::string SurfaceRecipe::rangeText() const {
    return isRatio() ? "a ratio of " + range.text() : range.text();
}

// The grids are single precision after every Execute: expressions are neither joined nor parted.
RasterPtr SurfaceRecipe::back(IMapAlgebraOp& algebra, const RasterPtr& interpolated,
                              const LinearTrend& trend) const {
    if (treatment == Treatment::none) return interpolated;
    algebra.BindRaster(interpolated, variable);
    if (isRatio()) {
        return algebra.Execute("[" + referenceRaster + "] * [" + variable + "] / " +
                               formatPlaces(referenceScale, 1));
    }
    const std::string line = retrendExpression(variable, trend);
    RasterPtr all = algebra.Execute(fromFahrenheit ? "5.0 / 9.0 * ( " + line + " - 32.0)" : line);
    if (!notNegative) return all;
    algebra.BindRaster(all, "AllCell");
    algebra.BindRaster(algebra.Execute("[AllCell] >= 0"), "Positive");
    return algebra.Execute("[AllCell] * [Positive]");
}

double SurfaceRecipe::backAt(double interpolated, const LinearTrend& trend, double elevation,
                             double reference) const {
    if (treatment == Treatment::none) return interpolated;
    if (isRatio()) return interpolated * (reference / referenceScale);
    const double value = interpolated + trend.a + trend.b * elevation;
    return notNegative ? std::max(0.0, value) : value;
}

std::string retrendExpression(const std::string& name, const LinearTrend& trend) {
    return "[" + name + "] + " + numberText(trend.a) + " + " + numberText(trend.b) + " * [DEM] ";
}

}  // namespace velmora
