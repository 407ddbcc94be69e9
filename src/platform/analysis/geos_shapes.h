// SPDX-License-Identifier: MIT
// Polygons as GEOS holds them.
#pragma once

#include <geos_c.h>
#include <ogrsf_frmts.h>

#include <memory>
#include <string>
#include <vector>

namespace velmora::platform {

// A context of GEOS. Each thread uses its own; shapes may be read through any of them. Operations
// that fail throw PlatformError with the library's message.
class GeosContext {
  public:
    GeosContext();
    ~GeosContext();
    GeosContext(const GeosContext&) = delete;
    GeosContext& operator=(const GeosContext&) = delete;
    GEOSContextHandle_t get() const { return handle_; }
    const std::string& lastMessage() const { return message_; }

  private:
    GEOSContextHandle_t handle_;
    std::string message_;
};

struct GeosShapeDeleter {
    GEOSContextHandle_t context;
    void operator()(GEOSGeometry* shape) const { GEOSGeom_destroy_r(context, shape); }
};
using GeosShape = std::unique_ptr<GEOSGeometry, GeosShapeDeleter>;  // dies before its context

struct GeosPreparedDeleter {
    GEOSContextHandle_t context;
    void operator()(const GEOSPreparedGeometry* shape) const {
        GEOSPreparedGeom_destroy_r(context, shape);
    }
};
using GeosPrepared = std::unique_ptr<const GEOSPreparedGeometry, GeosPreparedDeleter>;

// A polygon as GEOS holds it, valid; none for one that covers nothing. An invalid one is repaired,
// which `repair` says then. `record` of the file `path` is named by the PlatformError for one that
// cannot be used.
GeosShape validShape(GeosContext& context, const OGRGeometry& polygon, const std::string& path,
                     std::size_t record, std::string& repair);

// The shapes of a layer by record, valid ones, and what had to be repaired. A feature without a
// shape, or with one that covers nothing, has none.
struct GeosLayer {
    std::vector<GeosShape> shapes;
    std::vector<std::string> repairs;
};

// Reads the polygons of a shapefile in the coordinate system `crs`. `records` is their number.
// Throws PlatformError.
GeosLayer readShapes(GeosContext& context, const std::string& path, const std::string& crs,
                     std::size_t records);

// What two valid shapes have in common, as polygons; nothing when they share no area. Throws
// PlatformError.
GeosShape commonArea(GeosContext& context, const GEOSGeometry& a, const GEOSGeometry& b);

OGRGeometryUniquePtr ogrShape(GeosContext& context, const GEOSGeometry& shape);

}  // namespace velmora::platform
