// SPDX-License-Identifier: MIT
#pragma once

#include <ogrsf_frmts.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/features/shape_records.h"
#include "platform/features/vector_dataset.h"

namespace velmora::platform {

// The polygons of a shapefile one after the other, by record (deleted ones do not count) and in the
// coordinate system `crs` (WKT; "" or an unknown own system: as stored). Features without a shape
// are passed over. Throws PlatformError when the file cannot be read, is damaged or holds other
// shapes, or a shape has no image in `crs`. Polygons of one ring are read from the file's own
// bytes, others by GDAL, which sorts out whose holes are whose.
class PolygonReader {
  public:
    PolygonReader(const std::string& path, const std::string& crs);

    struct Polygon {
        std::size_t record;
        OGRGeometryUniquePtr shape;
    };
    std::optional<Polygon> next();  // nothing at the end

  private:
    bool atEnd() const { return places_ && record_ == places_->size(); }
    OGRGeometryUniquePtr geometry(bool& end);
    void require(const OGRGeometry& geometry) const;
    [[noreturn]] void refuse(const std::string& what) const;

    std::string path_;
    VectorLayer opened_;
    std::optional<ShapeRecords> records_;
    std::optional<std::vector<std::size_t>> places_;  // of a shapefile with a table
    std::unique_ptr<OGRCoordinateTransformation> transform_;
    std::size_t record_ = 0;  // that comes next
};

// Hands them over to `visit`.
void forEachPolygon(const std::string& path, const std::string& crs,
                    const std::function<void(std::size_t record, OGRGeometryUniquePtr)>& visit);

}  // namespace velmora::platform
