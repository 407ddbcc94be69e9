// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "gis/features.h"

namespace velmora::platform {

// A layer of polygons whose attributes come from a table of their own.
struct GeoPackageLayer {
    std::string polygons;                  // path of the shapefile that has the shapes
    std::string crs;                       // of the layer, as WKT; "" for that of the shapefile
    std::vector<std::size_t> rowOfRecord;  // the row of `attributes` to which each polygon belongs
    const ITable& attributes;
};

// Writes a GeoPackage with a feature for each row of the layer's attributes, whose polygons are
// one, and tables without shapes, in the place of an older file when it is whole and has as many
// records as were written. Throws PlatformError.
void exportGeoPackage(const std::string& path, const GeoPackageLayer& layer,
                      std::span<const ITable* const> tables);

}  // namespace velmora::platform
