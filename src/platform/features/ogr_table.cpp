// SPDX-License-Identifier: MIT
#include "platform/features/ogr_table.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <optional>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "platform/features/polygon_reader.h"
#include "platform/features/shape_records.h"
#include "platform/features/spatial_reference.h"
#include "platform/tables/dbase_edit.h"
#include "platform/tables/dbase_numbers.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostHeld = 100'000;  // records whose columns are held

FieldType typeOf(OGRFieldType type) {
    switch (type) {
        case OFTInteger:
        case OFTInteger64:
            return FieldType::integer;
        case OFTReal:
            return FieldType::number;
        case OFTString:
            return FieldType::text;
        default:
            return FieldType::other;
    }
}

FieldValue valueOf(const OGRFeature& feature, int field, FieldType type) {
    if (!feature.IsFieldSetAndNotNull(field)) return {};
    if (type == FieldType::number || type == FieldType::integer) {
        return feature.GetFieldAsDouble(field);
    }
    return std::string(feature.GetFieldAsString(field));
}

std::string upperCase(std::string text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

}  // namespace

std::string existingFile(const std::string& path, const std::string& extension,
                         const std::string& kind) {
    for (const std::string& candidate :
         {path + "." + extension, path + "." + upperCase(extension), path}) {
        if (fs::is_regular_file(candidate)) return candidate;
    }
    throw PlatformError("There is no " + kind + " " + path, {.file = path});
}

OgrTable::OgrTable(const std::string& path, ISpatialReferenceFactory& spatialReferences,
                   const std::string& crs)
    : path_(path),
      spatialReferences_(spatialReferences),
      opened_(openVectors(path)),
      layer_(opened_.layer) {
    const OGRFeatureDefn* definition = layer_->GetLayerDefn();
    for (int i = 0; i < definition->GetFieldCount(); ++i) {
        const OGRFieldDefn* field = definition->GetFieldDefn(i);
        fields_.push_back({field->GetNameRef(), typeOf(field->GetType()), field->GetWidth(),
                           field->GetPrecision()});
    }
    ownCrs_ = systemOf(*layer_);
    crs_ = crs.empty() ? ownCrs_ : crs;
    if (const std::string table = attributeTable(path_); !table.empty()) stored_.emplace(table);
    places_ = places();
}

// Of a dBASE table the marks of deleted records tell the others.
std::vector<std::size_t> OgrTable::places() const {
    if (stored_) return presentRecords(*stored_);
    std::vector<std::size_t> places;
    readOnly({}, false);
    while (const OGRFeatureUniquePtr feature = nextFeature(*layer_, path_)) {
        places.push_back(static_cast<std::size_t>(feature->GetFID()));
    }
    return places;
}

// An edit makes a new file beside the table.
bool OgrTable::takesEdits() const {
    const std::string table = attributeTable(path_);
    const std::string folder = parentFolderName(table);
    return !table.empty() && ::access(table.c_str(), W_OK) == 0 &&
           ::access(folder.empty() ? "." : folder.c_str(), W_OK) == 0;
}

// The next reading from the beginning takes these fields alone, and shapes if asked for.
void OgrTable::readOnly(const std::vector<std::string>& wanted, bool geometry) const {
    std::vector<const char*> ignored;
    for (const Field& field : fields_) {
        if (std::find(wanted.begin(), wanted.end(), field.name) == wanted.end()) {
            ignored.push_back(field.name.c_str());
        }
    }
    if (!geometry) ignored.push_back("OGR_GEOMETRY");
    ignored.push_back(nullptr);
    layer_->SetIgnoredFields(ignored.data());
    layer_->ResetReading();
}

std::string OgrTable::name() const { return baseName(path_); }

FieldValue OgrTable::value(std::size_t record, const std::string& field) const {
    const int index = fieldIndex(field);
    if (index < 0)
        throw PlatformError("The table " + path_ + " has no field " + field,
                            {.file = path_, .field = field});
    if (record >= recordCount()) {
        throw PlatformError("The table " + path_ + " has no record " + std::to_string(record + 1),
                            {.file = path_, .record = record + 1});
    }
    if (!readsInPlace(index)) return column(index)[record];
    const auto at = static_cast<std::size_t>(index);
    return plainValue(stored_->record(places_[record]), stored_->layout().columns[at],
                      fields_[at].type)
        .value();
}

// All of a column is looked at before its first value is given.
bool OgrTable::readsInPlace(int field) const {
    if (!stored_ || recordCount() <= kMostHeld) return false;
    const auto found = inPlace_.find(field);
    if (found != inPlace_.end()) return found->second;
    const auto at = static_cast<std::size_t>(field);
    return inPlace_.emplace(field, isPlain(*stored_, at, fields_[at].type, places_)).first->second;
}

const std::vector<FieldValue>& OgrTable::column(int field) const {
    const auto found = columns_.find(field);
    if (found != columns_.end()) return found->second;
    if (stored_) {
        const auto at = static_cast<std::size_t>(field);
        auto plain = plainColumn(*stored_, at, fields_[at].type, places_);
        if (plain) return columns_.emplace(field, std::move(*plain)).first->second;
    }
    return columns_.emplace(field, columnByGdal(field)).first->second;
}

std::vector<FieldValue> OgrTable::columnByGdal(int field) const {
    const auto& [name, type, width, decimals] = fields_[static_cast<std::size_t>(field)];
    std::vector<FieldValue> values;
    values.reserve(recordCount());
    const bool numeric = type == FieldType::number || type == FieldType::integer;
    if (numeric) requireNumbersOf(field);
    readOnly({name}, false);
    while (const OGRFeatureUniquePtr feature = nextFeature(*layer_, path_)) {
        values.push_back(valueOf(*feature, field, type));
        const auto* number = std::get_if<double>(&values.back());
        if (number && !(std::abs(*number) <= std::numeric_limits<float>::max())) {
            throw errorInField({.file = path_, .field = name, .record = values.size()},
                               numberText(*number) + " is no number that a run can take");
        }
    }
    if (values.size() != recordCount()) {
        throw PlatformError("The table " + path_ + " has changed while it was read",
                            {.file = path_});
    }
    return values;
}

// The stored texts of a dBASE column of numbers, of which GDAL reads what it can.
void OgrTable::requireNumbersOf(int field) const {
    const std::string table = attributeTable(path_);
    if (!table.empty()) requireNumbers(table, static_cast<std::size_t>(field), places_);
}

Envelope OgrTable::extent() const {
    OGREnvelope e;
    bool known = true;
    if (!transformed()) {
        known = layer_->GetExtent(&e) == OGRERR_NONE;
    } else {
        forEachPolygon(path_, crs_, [&](std::size_t, OGRGeometryUniquePtr shape) {
            OGREnvelope own;
            shape->getEnvelope(&own);
            e.Merge(own);
        });
    }
    if (recordCount() == 0 || !known || !e.IsInit()) {
        throw PlatformError(path_ + " holds no feature, so it has no extent", {.file = path_});
    }
    return {e.MinX, e.MinY, e.MaxX, e.MaxY};
}

std::vector<Point> OgrTable::points(const std::string& crs) const {
    std::vector<Point> points;
    points.reserve(recordCount());
    const std::optional<ShapeRecords> records = shapeRecords(path_);
    readOnly({}, true);
    while (const OGRFeatureUniquePtr feature = nextFeature(*layer_, path_)) {
        if (records) records->holdsShape(static_cast<std::size_t>(feature->GetFID()));
        const OGRGeometry* geometry = feature->GetGeometryRef();
        if (!geometry || wkbFlatten(geometry->getGeometryType()) != wkbPoint ||
            geometry->IsEmpty()) {
            throw PlatformError("Feature " + std::to_string(points.size() + 1) + " of " + path_ +
                                    " is no point: choose a point shapefile",
                                {.file = path_, .record = points.size() + 1});
        }
        const OGRPoint* point = geometry->toPoint();
        if (!std::isfinite(point->getX()) || !std::isfinite(point->getY())) {
            throw PlatformError("Feature " + std::to_string(points.size() + 1) + " of " + path_ +
                                    " is damaged: its position is no number",
                                {.file = path_, .record = points.size() + 1});
        }
        points.push_back({point->getX(), point->getY()});
    }
    if (ownCrs_.empty() || crs.empty()) return points;
    return spatialReferences_.project(points, ownCrs_, crs);
}

bool OgrTable::transformed() const {
    return !ownCrs_.empty() && !sameCoordinateSystem(ownCrs_, crs_);
}

std::vector<double> OgrTable::areas() const {
    std::vector<double> areas(recordCount(), 0.0);
    forEachPolygon(path_, crs_, [&](std::size_t record, OGRGeometryUniquePtr shape) {
        const auto type = wkbFlatten(shape->getGeometryType());
        areas.at(record) = type == wkbPolygon ? shape->toPolygon()->get_Area()
                                              : shape->toMultiPolygon()->get_Area();
    });
    return areas;
}

void OgrTable::forEachRing(const std::string& crs,
                           const std::function<void(std::span<const Point> ring)>& visit) const {
    std::vector<Point> points;
    forEachPolygon(path_, crs, [&](std::size_t, OGRGeometryUniquePtr shape) {
        const OGRGeometryUniquePtr parts(OGRGeometryFactory::forceToMultiPolygon(shape.release()));
        for (const OGRPolygon* polygon : *parts->toMultiPolygon()) {
            for (const OGRLinearRing* ring : *polygon) {
                points.clear();
                for (int i = 0; i < ring->getNumPoints(); ++i) {
                    points.push_back({ring->getX(i), ring->getY(i)});
                }
                visit(points);
            }
        }
    });
}

bool OgrTable::holdsPolygons() const {
    const auto type = wkbFlatten(layer_->GetGeomType());
    return type == wkbPolygon || type == wkbMultiPolygon;
}

}  // namespace velmora::platform
