// SPDX-License-Identifier: MIT
// Raster analysis over polygons: from polygons to grids, and grids summarised by polygons.
#pragma once

#include <memory>
#include <string>

#include "gis/analysis.h"
#include "gis/joins.h"

namespace velmora {

// The features that an operation uses, and the field whose values it takes from them.
struct FeatureClassDescriptor {
    const IJoinedLayer& layer;
    std::string whereClause;  // "" for all features
    std::string field;        // qualified, as the layer names it
};

// From features to rasters.
class IConversionOp {
  public:
    virtual ~IConversionOp() = default;
    virtual IRasterAnalysisEnvironment& environment() = 0;

    // Saves the polygons' numbers as a raster dataset on the environment's cells: a cell takes the
    // value of the polygon that contains its centre, of several the later feature's. Cells in no
    // polygon, and those of polygons whose value is null, have no data. Throws PlatformError.
    virtual std::unique_ptr<IRasterDataset> ToRasterDataset(
        const FeatureClassDescriptor& descriptor, const std::string& format,
        IRasterWorkspace& workspace, const std::string& name) = 0;
};

// Values of a raster by zones.
class IZonalOp {
  public:
    virtual ~IZonalOp() = default;

    // One record per zone that has data, zones in the order in which their keys first appear among
    // the features of `zones`; all polygons of one key are one zone. A cell belongs to the zone of
    // the polygon that contains its centre, of several the later feature's. Fields: the zone field
    // by its own name, then numbers "Count" (cells with data), "Area" (their area, square map
    // units), "Min", "Max", "Mean" and "Sum". With `ignoreNoData` cells without data do not count;
    // without it a zone that holds such a cell has no record. Throws PlatformError.
    virtual std::shared_ptr<ITable> ZonalStatisticsAsTable(
        const std::shared_ptr<IFeatureClass>& zones, const std::string& zoneField,
        const RasterPtr& values, bool ignoreNoData) = 0;
};

}  // namespace velmora
