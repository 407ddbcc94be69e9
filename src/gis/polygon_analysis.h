// SPDX-License-Identifier: MIT
// Raster analysis over polygons: from polygons to grids, and grids summarised by polygons.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

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

constexpr std::int32_t kNoRecord = -1;

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

    // The record of the polygon to which each cell belongs by the same rule, kNoRecord for none:
    // of `rows` whole rows of the grid from `firstRow` on, row by row. Throws PlatformError.
    virtual std::vector<std::int32_t> recordsOfCells(const IFeatureClass& polygons,
                                                     const GridGeometry& geometry, int firstRow,
                                                     int rows) = 0;
};

// A polygon layer of an overlay, opened in the coordinate system of the result.
struct OverlayLayer {
    std::shared_ptr<IFeatureClass> features;
    // The field that keeps its name where both layers have one of that name; the other layer's gets
    // a number behind it.
    std::string keptField;
};

struct OverlayResult {
    std::size_t pieces = 0;
    // A line for each polygon that was invalid and has been repaired: which one, and why.
    std::vector<std::string> repairs;
};

// Polygons cut by polygons.
class IOverlayOp {
  public:
    virtual ~IOverlayOp() = default;

    // Saves what the polygons of both layers have in common as a shapefile, replacing an older one:
    // a piece for every pair of polygons that share an area, with the fields of the first layer and
    // then those of the second, in the order of the first layer's records and then the second's.
    // Invalid polygons are repaired so that they cover what lies inside an odd number of their
    // rings. Throws PlatformError and leaves nothing under the path.
    virtual OverlayResult Intersect(const OverlayLayer& first, const OverlayLayer& second,
                                    const std::string& path) = 0;
};

}  // namespace velmora
