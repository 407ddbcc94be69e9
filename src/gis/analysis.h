// SPDX-License-Identifier: MIT
// Raster analysis: the environment, map algebra and interpolation.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "gis/envelope.h"
#include "gis/rasters.h"
#include "gis/semivariogram.h"

namespace velmora {

// How an analysis environment takes its cell size or extent.
enum class EnvironmentSetting { minimumOfInputs = 2, explicitValue = 3 };

// The extent and cell size of the results of an operation.
class IRasterAnalysisEnvironment {
  public:
    virtual ~IRasterAnalysisEnvironment() = default;
    // The value counts for explicitValue alone.
    virtual void SetCellSize(EnvironmentSetting setting, double cellSize) = 0;
    // `crs` is the coordinate system of the extent, as WKT. Both count for explicitValue alone.
    virtual void SetExtent(EnvironmentSetting setting, const Envelope& extent,
                           const std::string& crs) = 0;
    // The cells that results have under explicit settings. Throws PlatformError when the settings
    // make no grid.
    virtual GridGeometry geometry() const = 0;
};

// Sets the environment to exactly the cells of a grid.
inline void useCells(IRasterAnalysisEnvironment& environment, const GridGeometry& cells) {
    environment.SetCellSize(EnvironmentSetting::explicitValue, cells.cellSize);
    environment.SetExtent(EnvironmentSetting::explicitValue, cells.extent(), cells.crs);
}

// Lets each result take the smallest cell size of its inputs and the part of the map that all of
// them cover, on the lattice of the finest input.
inline void useInputs(IRasterAnalysisEnvironment& environment) {
    environment.SetCellSize(EnvironmentSetting::minimumOfInputs, 0);
    environment.SetExtent(EnvironmentSetting::minimumOfInputs, {}, {});
}

// Map algebra over bound rasters: numbers, [names], + - * / with a unary (also doubled) minus,
// comparisons giving 1 or 0, parentheses. No-data in an operand and division by zero give no-data;
// arithmetic is double, results are single. Inputs on other cells, or in another coordinate system,
// are sampled at the cell centres of the environment.
class IMapAlgebraOp {
  public:
    virtual ~IMapAlgebraOp() = default;
    virtual IRasterAnalysisEnvironment& environment() = 0;
    virtual void BindRaster(RasterPtr raster, const std::string& name) = 0;
    virtual void UnbindRaster(const std::string& name) = 0;
    // Throws PlatformError with the position of a mistake, or the unbound name.
    virtual RasterPtr Execute(const std::string& expression) = 0;
};

// One station of an interpolation: where it stands and its value.
struct Sample {
    Point at;
    double value = 0;
};

enum class SemivariogramType { spherical = 2 };

// Surfaces from stations. Both methods take the `nearest` nearest stations of a cell (a variable
// search radius without a maximum; of equal distances the smaller x, then y, is nearer), and count
// coincident stations as one with their mean value. The order of the samples changes nothing.
class IInterpolationOp {
  public:
    virtual ~IInterpolationOp() = default;
    virtual IRasterAnalysisEnvironment& environment() = 0;

    // Inverse distance weighting, weight distance^-power; a cell centre on a station takes its
    // value. Throws PlatformError without samples.
    virtual RasterPtr IDW(const std::vector<Sample>& samples, double power, int nearest) = 0;

    // Ordinary kriging with the model of semivariogram(). Gives no raster when there is no model,
    // or when stations stand so close together that a kriging system has no solution.
    virtual RasterPtr Krige(const std::vector<Sample>& samples, SemivariogramType type,
                            int nearest) = 0;

    // The semivariogram of the samples and the model that fits it best. There is none for fewer
    // than four stations, for values without variance, or when no two stations stand closer than a
    // third of the diagonal of all.
    virtual std::optional<Semivariogram> semivariogram(
        const std::vector<Sample>& samples) const = 0;
};

class IConversionOp;
class IZonalOp;
class IOverlayOp;

// Makes the operations; each has an environment of its own.
class IAnalysisFactory {
  public:
    virtual ~IAnalysisFactory() = default;
    virtual std::unique_ptr<IMapAlgebraOp> mapAlgebra() = 0;
    virtual std::unique_ptr<IInterpolationOp> interpolation() = 0;
    virtual std::unique_ptr<IConversionOp> conversion() = 0;
    virtual std::unique_ptr<IZonalOp> zonal() = 0;
    virtual std::unique_ptr<IOverlayOp> overlay() = 0;
    // A raster of one value over the given cells.
    virtual RasterPtr constant(const GridGeometry& geometry, float value) = 0;
};

}  // namespace velmora
