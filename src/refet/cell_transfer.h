// SPDX-License-Identifier: MIT
// Cell values between grids and the cell table. Grids run row by row, the table column by column.
#pragma once

#include "gis/parallel.h"
#include "gis/rasters.h"
#include "refet/cell_table.h"

namespace velmora {

// Copies a raster into a field of the table's records; cells without data carry kNoData. Throws
// PlatformError when the raster has another number of cells than the table has records.
void gridIntoField(IParallelLoop& loop, const IRaster& raster, CellTable& table, CellField field);

// A field of the table as a raster of the given cells. The table must outlive it. Throws
// PlatformError when the table has fewer records than the raster has cells.
RasterPtr fieldAsGrid(const CellTable& table, CellField field, const GridGeometry& geometry);

// The same of values in the order of the records, as many as the geometry has cells, which must
// outlive it.
RasterPtr valuesAsGrid(std::span<const double> values, const GridGeometry& geometry);

}  // namespace velmora
