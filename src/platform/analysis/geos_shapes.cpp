// SPDX-License-Identifier: MIT
#include "platform/analysis/geos_shapes.h"

#include <utility>

#include "gis/errors.h"
#include "platform/features/polygon_reader.h"

namespace velmora::platform {

namespace {

void keepMessage(const char* text, void* message) { *static_cast<std::string*>(message) = text; }

double areaOf(GeosContext& context, const GEOSGeometry& shape) {
    double area = 0;
    GEOSArea_r(context.get(), &shape, &area);
    return area;
}

// The polygons among the parts of a shape, points and lines dropped; nothing when they cover
// nothing.
GeosShape polygonsOf(GeosContext& context, GeosShape shape) {
    const int type = GEOSGeomTypeId_r(context.get(), shape.get());
    if (!(areaOf(context, *shape) > 0)) return {nullptr, {context.get()}};
    if (type == GEOS_POLYGON || type == GEOS_MULTIPOLYGON) return shape;
    std::vector<GEOSGeometry*> parts;
    for (int i = 0; i < GEOSGetNumGeometries_r(context.get(), shape.get()); ++i) {
        const GEOSGeometry* part = GEOSGetGeometryN_r(context.get(), shape.get(), i);
        if (areaOf(context, *part) > 0) {
            parts.push_back(GEOSGeom_clone_r(context.get(), part));
        }
    }
    const GeosShape collection(
        GEOSGeom_createCollection_r(context.get(), GEOS_GEOMETRYCOLLECTION, parts.data(),
                                    static_cast<unsigned>(parts.size())),
        {context.get()});
    return {GEOSUnaryUnion_r(context.get(), collection.get()), {context.get()}};
}

// A valid form of an invalid shape; says why.
GeosShape repaired(GeosContext& context, GeosShape shape, const std::string& where,
                   std::string& repair) {
    char* reason = GEOSisValidReason_r(context.get(), shape.get());
    repair =
        where + " was invalid (" + (reason ? reason : "unknown reason") + ") and has been repaired";
    GEOSFree_r(context.get(), reason);
    GeosShape valid(GEOSMakeValid_r(context.get(), shape.get()), {context.get()});
    if (!valid) throw PlatformError(where + " cannot be repaired: " + context.lastMessage());
    return polygonsOf(context, std::move(valid));
}

}  // namespace

GeosContext::GeosContext() : handle_(GEOS_init_r()) {
    GEOSContext_setErrorMessageHandler_r(handle_, keepMessage, &message_);
}

GeosContext::~GeosContext() { GEOS_finish_r(handle_); }

GeosShape validShape(GeosContext& context, const OGRGeometry& polygon, const std::string& path,
                     std::size_t record, std::string& repair) {
    const auto where = [&] { return "Feature " + std::to_string(record + 1) + " of " + path; };
    GeosShape shape(polygon.exportToGEOS(context.get()), {context.get()});
    if (!shape) {
        throw PlatformError(where() + " cannot be used: " + context.lastMessage(),
                            {.file = path, .record = record + 1});
    }
    if (GEOSisValid_r(context.get(), shape.get()) == 1) return shape;
    return repaired(context, std::move(shape), where(), repair);
}

GeosLayer readShapes(GeosContext& context, const std::string& path, const std::string& crs,
                     std::size_t records) {
    GeosLayer layer;
    for (std::size_t r = 0; r < records; ++r) layer.shapes.push_back({nullptr, {context.get()}});
    forEachPolygon(path, crs, [&](std::size_t record, OGRGeometryUniquePtr polygon) {
        std::string repair;
        layer.shapes.at(record) = validShape(context, *polygon, path, record, repair);
        if (!repair.empty()) layer.repairs.push_back(repair);
    });
    return layer;
}

GeosShape commonArea(GeosContext& context, const GEOSGeometry& a, const GEOSGeometry& b) {
    GeosShape common(GEOSIntersection_r(context.get(), &a, &b), {context.get()});
    if (!common) throw PlatformError(context.lastMessage());
    return polygonsOf(context, std::move(common));
}

OGRGeometryUniquePtr ogrShape(GeosContext& context, const GEOSGeometry& shape) {
    return OGRGeometryUniquePtr(OGRGeometryFactory::createFromGEOS(
        context.get(), const_cast<GEOSGeometry*>(&shape)));  // which it only reads
}

}  // namespace velmora::platform
