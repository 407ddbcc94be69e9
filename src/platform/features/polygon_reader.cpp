// SPDX-License-Identifier: MIT
#include "platform/features/polygon_reader.h"

#include <cmath>
#include <memory>
#include <optional>
#include <vector>

#include "gis/errors.h"
#include "platform/features/shape_records.h"
#include "platform/features/spatial_reference.h"
#include "platform/features/vector_dataset.h"

namespace velmora::platform {

namespace {

bool isPolygon(const OGRGeometry& geometry) {
    const auto type = wkbFlatten(geometry.getGeometryType());
    return type == wkbPolygon || type == wkbMultiPolygon;
}

bool hasNumbers(const OGRPolygon& polygon) {
    for (const OGRLinearRing* ring : polygon) {
        for (int i = 0; i < ring->getNumPoints(); ++i) {
            if (!std::isfinite(ring->getX(i)) || !std::isfinite(ring->getY(i))) return false;
        }
    }
    return true;
}

bool hasNumbers(const OGRGeometry& geometry) {
    if (wkbFlatten(geometry.getGeometryType()) == wkbPolygon) {
        return hasNumbers(*geometry.toPolygon());
    }
    for (const OGRPolygon* part : *geometry.toMultiPolygon()) {
        if (!hasNumbers(*part)) return false;
    }
    return true;
}

std::unique_ptr<OGRCoordinateTransformation> transformation(const OGRLayer& layer,
                                                            const std::string& crs) {
    auto& source = const_cast<OGRLayer&>(layer);
    const std::string own = systemOf(source);
    if (own.empty() || crs.empty() || sameCoordinateSystem(own, crs)) return nullptr;
    const OGRSpatialReference from = spatialReference(own);
    const OGRSpatialReference to = spatialReference(crs);
    std::unique_ptr<OGRCoordinateTransformation> made;
    lookUp([&] { made.reset(OGRCreateCoordinateTransformation(&from, &to)); });
    if (!made) throw PlatformError("No way from " + own + " to " + crs);
    return made;
}

}  // namespace

void forEachPolygon(const std::string& path, const std::string& crs,
                    const std::function<void(std::size_t record, OGRGeometryUniquePtr)>& visit) {
    const VectorLayer opened = openVectors(path);
    OGRLayer* layer = opened.layer;
    const std::optional<ShapeRecords> records = shapeRecords(path);
    const auto transform = transformation(*layer, crs);
    std::vector<const char*> ignored;
    for (int i = 0; i < layer->GetLayerDefn()->GetFieldCount(); ++i) {
        ignored.push_back(layer->GetLayerDefn()->GetFieldDefn(i)->GetNameRef());
    }
    ignored.push_back(nullptr);
    layer->SetIgnoredFields(ignored.data());
    std::size_t record = 0;
    for (; const OGRFeatureUniquePtr feature = nextFeature(*layer, path); ++record) {
        const bool shaped =
            records && records->holdsShape(static_cast<std::size_t>(feature->GetFID()));
        OGRGeometryUniquePtr geometry(feature->StealGeometry());
        const std::string where = "Feature " + std::to_string(record + 1) + " of " + path;
        const ErrorPlace place{.file = path, .record = record + 1};
        if (!geometry || geometry->IsEmpty()) {
            if (shaped) throw PlatformError(where + " is damaged: its shape cannot be read", place);
            continue;
        }
        if (!isPolygon(*geometry)) {
            throw PlatformError(where + " is no polygon: choose a polygon shapefile", place);
        }
        if (!hasNumbers(*geometry)) {
            throw PlatformError(where + " is damaged: a position in it is no number", place);
        }
        if (transform && geometry->transform(transform.get()) != OGRERR_NONE) {
            throw PlatformError(where + " has no image in the coordinate system of the run", place);
        }
        visit(record, std::move(geometry));
    }
}

}  // namespace velmora::platform
