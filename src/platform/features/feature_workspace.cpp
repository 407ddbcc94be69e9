// SPDX-License-Identifier: MIT
#include "platform/features/feature_workspace.h"

#include <cpl_error.h>

#include <algorithm>
#include <filesystem>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/features/ogr_table.h"
#include "platform/features/spatial_reference.h"
#include "platform/files/posix_file.h"
#include "platform/grid/gdal_raster.h"
#include "platform/tables/dbase_edit.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

const std::vector<std::string> kShapefileParts = {"shp", "shx", "dbf", "prj",
                                                  "cpg", "qix", "sbn", "sbx"};

void createField(OGRLayer& layer, const Field& field) {
    const OGRFieldType type = field.type == FieldType::text      ? OFTString
                              : field.type == FieldType::integer ? OFTInteger
                                                                 : OFTReal;
    OGRFieldDefn definition(field.name.c_str(), type);
    definition.SetWidth(field.width);
    definition.SetPrecision(field.decimals);
    layer.CreateField(&definition);
}

void setFields(OGRFeature& feature, const std::vector<FieldValue>& values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        const int index = static_cast<int>(i);
        if (const auto* number = std::get_if<double>(&values[i])) {
            feature.SetField(index, *number);
        } else if (const auto* text = std::get_if<std::string>(&values[i])) {
            feature.SetField(index, text->c_str());
        } else {
            feature.SetFieldNull(index);
        }
    }
}

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

// Makes a layer of features or bare records in a folder beside, then moves its files in place.
void create(const std::string& path, OGRwkbGeometryType type, const std::string& crs,
            const std::vector<Field>& fields, const std::vector<NewFeature>& features) {
    const std::string stem = baseName(path);
    const std::string unfinished = unfinishedPath(withoutExtension(path));
    CPLErrorReset();
    try {
        auto* driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
        VectorDatasetPtr dataset(driver->Create(unfinished.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        OGRSpatialReference system;
        if (!crs.empty()) system = spatialReference(crs);
        OGRLayer* layer =
            dataset
                ? dataset->CreateLayer(stem.c_str(), crs.empty() ? nullptr : &system, type, nullptr)
                : nullptr;
        if (!layer) throw PlatformError(gdalMessage("the folder may not be writable"));
        for (const Field& field : fields) createField(*layer, field);
        for (const NewFeature& feature : features) {
            OGRFeature record(layer->GetLayerDefn());
            setFields(record, feature.values);
            if (type != wkbNone) record.SetGeometry(shapeOf(feature, type == wkbPolygon).get());
            if (layer->CreateFeature(&record) != OGRERR_NONE)
                throw PlatformError(gdalMessage("disk full"));
        }
        dataset.reset();
        for (const std::string& part : kShapefileParts) {
            const fs::path from = fs::path(unfinished) / (stem + "." + part);
            const fs::path to = withoutExtension(path) + "." + part;
            if (fs::exists(from)) {
                fs::rename(from, to);
            } else if (type != wkbNone || part == "cpg") {
                fs::remove(to);  // an old one's would say what is not so
            }
        }
        removeTree(unfinished);
    } catch (const std::exception& e) {
        removeTree(unfinished);
        throw PlatformError("Cannot write " + path + ": " + e.what());
    }
}

}  // namespace

FeatureWorkspaceFactory::FeatureWorkspaceFactory(ISpatialReferenceFactory& spatialReferences)
    : spatialReferences_(spatialReferences) {
    initialiseGdal();
}

std::shared_ptr<IFeatureClass> FeatureWorkspaceFactory::openFeatureClass(const std::string& path) {
    return std::make_shared<OgrTable>(existingFile(path, "shp", "shapefile"), spatialReferences_);
}

std::shared_ptr<IFeatureClass> FeatureWorkspaceFactory::openFeatureClass(const std::string& path,
                                                                         const std::string& crs) {
    return std::make_shared<OgrTable>(existingFile(path, "shp", "shapefile"), spatialReferences_,
                                      crs);
}

std::shared_ptr<ITable> FeatureWorkspaceFactory::openTable(const std::string& path) {
    return std::make_shared<OgrTable>(existingFile(path, "dbf", "table"), spatialReferences_);
}

std::unique_ptr<IEditSession> FeatureWorkspaceFactory::edit(std::shared_ptr<ITable> table) {
    return std::make_unique<DbaseEdit>(std::move(table));
}

bool FeatureWorkspaceFactory::deleteFeatureClass(const std::string& path) {
    const std::string stem = sameIgnoringCase(fs::path(path).extension().string(), ".shp")
                                 ? withoutExtension(path)
                                 : path;
    if (!fs::is_regular_file(stem + ".shp")) return false;
    for (const std::string& part : kShapefileParts) removeTree(stem + "." + part);
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
        throw PlatformError("The table " + path + " belongs to a shapefile: choose another name");
    }
    std::vector<NewFeature> rows;
    rows.reserve(records.size());
    for (const auto& record : records) rows.push_back({{}, record});
    create(path, wkbNone, {}, fields, rows);
}

}  // namespace velmora::platform
