// SPDX-License-Identifier: MIT
#include "platform/features/feature_workspace.h"

#include <filesystem>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/features/ogr_table.h"
#include "platform/features/shapefile_writer.h"
#include "platform/files/gdal_library.h"
#include "platform/files/posix_file.h"
#include "platform/files/run_notes.h"
#include "platform/tables/dbase_edit.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

OGRGeometryUniquePtr shapeOf(const NewFeature& feature, bool polygons) {
    if (!polygons) {
        return OGRGeometryUniquePtr(new OGRPoint(feature.ring.at(0).x, feature.ring.at(0).y));
    }
    OGRLinearRing ring;
    for (const Point& p : feature.ring) ring.addPoint(p.x, p.y);
    ring.closeRings();
    auto polygon = std::make_unique<OGRPolygon>();
    polygon->addRing(&ring);
    return OGRGeometryUniquePtr(polygon.release());
}

// Makes a layer of features or bare records.
void create(const std::string& path, OGRwkbGeometryType type, const std::string& crs,
            const std::vector<Field>& fields, const std::vector<NewFeature>& features) {
    EncodingChoice choice;
    choice.add(fields);
    for (const NewFeature& feature : features) {
        for (const FieldValue& value : feature.values) choice.add(value);
    }
    writeLayer(path, type, crs, fields, choice.encoding(), [&](const LayerWriter& add) {
        for (const NewFeature& feature : features) {
            add(feature.values, type == wkbNone ? nullptr : shapeOf(feature, type == wkbPolygon));
        }
    });
}

std::shared_ptr<OgrTable> noted(std::shared_ptr<OgrTable> table) {
    noteRead(table->path(), table->sourceCrs());
    return table;
}

}  // namespace

FeatureWorkspaceFactory::FeatureWorkspaceFactory(ISpatialReferenceFactory& spatialReferences)
    : spatialReferences_(spatialReferences) {
    initialiseGdal();
}

std::shared_ptr<IFeatureClass> FeatureWorkspaceFactory::openFeatureClass(const std::string& path) {
    return noted(
        std::make_shared<OgrTable>(existingFile(path, "shp", "shapefile"), spatialReferences_));
}

std::shared_ptr<IFeatureClass> FeatureWorkspaceFactory::openFeatureClass(const std::string& path,
                                                                         const std::string& crs) {
    return noted(std::make_shared<OgrTable>(existingFile(path, "shp", "shapefile"),
                                            spatialReferences_, crs));
}

std::shared_ptr<ITable> FeatureWorkspaceFactory::openTable(const std::string& path) {
    return noted(
        std::make_shared<OgrTable>(existingFile(path, "dbf", "table"), spatialReferences_));
}

std::unique_ptr<IEditSession> FeatureWorkspaceFactory::edit(std::shared_ptr<ITable> table) {
    return std::make_unique<DbaseEdit>(std::move(table));
}

bool FeatureWorkspaceFactory::deleteFeatureClass(const std::string& path) {
    const std::string stem = sameIgnoringCase(fs::path(path).extension().string(), ".shp")
                                 ? withoutExtension(path)
                                 : path;
    if (!fs::is_regular_file(stem + ".shp")) return false;
    for (const char* part : kShapefileParts) removeTree(stem + "." + part);
    return true;
}

void FeatureWorkspaceFactory::createFeatureClass(const std::string& path, bool polygons,
                                                 const std::string& crs,
                                                 const std::vector<Field>& fields,
                                                 const std::vector<NewFeature>& features) {
    create(path, polygons ? wkbPolygon : wkbPoint, crs, fields, features);
}

void FeatureWorkspaceFactory::createTable(const std::string& path, const std::vector<Field>& fields,
                                          const std::vector<std::vector<FieldValue>>& records) {
    if (fs::exists(withoutExtension(path) + ".shp")) {
        throw PlatformError("The table " + path + " belongs to a shapefile: choose another name",
                            {.file = path});
    }
    std::vector<NewFeature> rows;
    rows.reserve(records.size());
    for (const auto& record : records) rows.push_back({{}, record});
    create(path, wkbNone, {}, fields, rows);
}

}  // namespace velmora::platform
