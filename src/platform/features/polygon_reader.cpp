// SPDX-License-Identifier: MIT
#include "platform/features/polygon_reader.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <string_view>
#include <utility>

#include "gis/errors.h"
#include "platform/features/spatial_reference.h"
#include "platform/tables/dbase_edit.h"
#include "platform/tables/dbase_records.h"

namespace velmora::platform {

namespace {

// Whether numbers stand in memory as they do in a shapefile.
constexpr bool kPlainBytes = std::endian::native == std::endian::little;

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

// The next reading takes shapes alone.
void ignoreFields(OGRLayer& layer) {
    std::vector<const char*> ignored;
    for (int i = 0; i < layer.GetLayerDefn()->GetFieldCount(); ++i) {
        ignored.push_back(layer.GetLayerDefn()->GetFieldDefn(i)->GetNameRef());
    }
    ignored.push_back(nullptr);
    layer.SetIgnoredFields(ignored.data());
}

std::optional<std::vector<std::size_t>> placesIn(const std::string& path) {
    const std::string table = attributeTable(path);
    if (table.empty()) return std::nullopt;
    DbaseRecords records(table);
    return presentRecords(records);
}

OGRGeometryUniquePtr polygonOf(std::string_view points) {
    std::vector<OGRRawPoint> ring(points.size() / sizeof(OGRRawPoint));
    std::memcpy(ring.data(), points.data(), ring.size() * sizeof(OGRRawPoint));
    auto outer = std::make_unique<OGRLinearRing>();
    outer->setPoints(static_cast<int>(ring.size()), ring.data());
    auto polygon = std::make_unique<OGRPolygon>();
    polygon->addRingDirectly(outer.release());
    return OGRGeometryUniquePtr(polygon.release());
}

}  // namespace

PolygonReader::PolygonReader(const std::string& path, const std::string& crs)
    : path_(path),
      opened_(openVectors(path)),
      records_(shapeRecords(path)),
      places_(records_ ? placesIn(path) : std::nullopt),
      transform_(transformation(*opened_.layer, crs)) {
    ignoreFields(*opened_.layer);
}

std::optional<PolygonReader::Polygon> PolygonReader::next() {
    for (; !atEnd(); ++record_) {
        bool end = false;
        OGRGeometryUniquePtr shape = geometry(end);
        if (end) break;
        if (!shape) continue;
        require(*shape);
        if (transform_ && shape->transform(transform_.get()) != OGRERR_NONE) {
            refuse(" has no image in the coordinate system of the run");
        }
        return Polygon{record_++, std::move(shape)};
    }
    return std::nullopt;
}

// The shape of the record, none when it has none; `end` when there is no such record.
OGRGeometryUniquePtr PolygonReader::geometry(bool& end) {
    OGRFeatureUniquePtr feature;
    bool shaped = false;
    if (places_) {
        const std::size_t place = (*places_)[record_];
        shaped = records_->holdsShape(place);
        const auto ring = shaped && kPlainBytes ? records_->onlyRing(place) : std::nullopt;
        if (ring) return polygonOf(*ring);
        feature = featureAt(*opened_.layer, path_, place);
    } else {
        feature = nextFeature(*opened_.layer, path_);
        shaped = feature && records_ &&
                 records_->holdsShape(static_cast<std::size_t>(feature->GetFID()));
    }
    end = !feature;
    if (end) return nullptr;
    OGRGeometryUniquePtr shape(feature->StealGeometry());
    if (shape && !shape->IsEmpty()) return shape;
    if (shaped) refuse(" is damaged: its shape cannot be read");
    return nullptr;
}

void PolygonReader::require(const OGRGeometry& geometry) const {
    if (!isPolygon(geometry)) refuse(" is no polygon: choose a polygon shapefile");
    if (!hasNumbers(geometry)) refuse(" is damaged: a position in it is no number");
}

void PolygonReader::refuse(const std::string& what) const {
    throw PlatformError("Feature " + std::to_string(record_ + 1) + " of " + path_ + what,
                        {.file = path_, .record = record_ + 1});
}

void forEachPolygon(const std::string& path, const std::string& crs,
                    const std::function<void(std::size_t record, OGRGeometryUniquePtr)>& visit) {
    PolygonReader reader(path, crs);
    while (auto polygon = reader.next()) visit(polygon->record, std::move(polygon->shape));
}

}  // namespace velmora::platform
