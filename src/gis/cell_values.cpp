// SPDX-License-Identifier: MIT
#include "gis/cell_values.h"

#include "gis/grid.h"

namespace velmora {

std::vector<std::optional<double>> cellValuesAt(const IRaster& raster,
                                                const std::vector<Point>& points,
                                                const std::string& crs,
                                                ISpatialReferenceFactory& spatialReferences) {
    const GridGeometry& cells = raster.geometry();
    std::vector<std::optional<double>> values;
    for (const Point& p :
         cells.crs.empty() ? points : spatialReferences.project(points, crs, cells.crs)) {
        const int column = cells.columnAt(p.x);
        const int row = cells.rowAt(p.y);
        float value = kNoData;
        if (column >= 0 && column < cells.columns && row >= 0 && row < cells.rows) {
            raster.read({column, row, 1, 1}, {&value, 1});
        }
        values.push_back(value == kNoData ? std::nullopt
                                          : std::optional(static_cast<double>(value)));
    }
    return values;
}

}  // namespace velmora
