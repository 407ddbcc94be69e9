// SPDX-License-Identifier: MIT
#include "platform/features/geopackage_export.h"

#include <ogrsf_frmts.h>

#include <memory>
#include <utility>

#include "gis/errors.h"
#include "platform/features/polygon_reader.h"
#include "platform/features/spatial_reference.h"
#include "platform/files/gdal_library.h"
#include "platform/files/posix_file.h"
#include "platform/files/unfinished_file.h"

namespace velmora::platform {

namespace {

OGRLayer& createLayer(GDALDataset& dataset, const ITable& table, OGRwkbGeometryType type,
                      OGRSpatialReference* system) {
    OGRLayer* layer = dataset.CreateLayer(table.name().c_str(), system, type, nullptr);
    if (!layer) throw PlatformError(gdalMessage("no layer can be made"));
    for (const Field& field : table.fields()) {
        OGRFieldDefn definition(field.name.c_str(),
                                field.type == FieldType::text ? OFTString : OFTReal);
        if (layer->CreateField(&definition) != OGRERR_NONE) {
            throw PlatformError(gdalMessage("the field " + field.name + " cannot be made"));
        }
    }
    return *layer;
}

void addRecord(OGRLayer& layer, const ITable& table, std::size_t row, OGRGeometryUniquePtr shape) {
    OGRFeature feature(layer.GetLayerDefn());
    for (std::size_t f = 0; f < table.fields().size(); ++f) {
        const FieldValue value = table.value(row, table.fields()[f].name);
        const int at = static_cast<int>(f);
        if (const auto* number = std::get_if<double>(&value)) {
            feature.SetField(at, *number);
        } else if (const auto* text = std::get_if<std::string>(&value)) {
            feature.SetField(at, text->c_str());
        } else {
            feature.SetFieldNull(at);
        }
    }
    if (shape) feature.SetGeometryDirectly(shape.release());
    if (layer.CreateFeature(&feature) != OGRERR_NONE) {
        throw PlatformError(gdalMessage("the disk may be full"));
    }
}

// Without borders between its polygons; as it is where they cannot be united.
OGRGeometryUniquePtr united(std::unique_ptr<OGRMultiPolygon> polygons) {
    if (!polygons) return nullptr;
    polygons->closeRings();
    if (polygons->getNumGeometries() > 1) {
        OGRGeometryUniquePtr one(polygons->UnionCascaded());
        if (one) {
            return OGRGeometryUniquePtr(OGRGeometryFactory::forceToMultiPolygon(one.release()));
        }
    }
    return OGRGeometryUniquePtr(polygons.release());
}

// The polygons of each row as one shape.
std::vector<OGRGeometryUniquePtr> shapesOf(const GeoPackageLayer& layer) {
    std::vector<std::unique_ptr<OGRMultiPolygon>> collected(layer.attributes.recordCount());
    forEachPolygon(layer.polygons, layer.crs, [&](std::size_t record, OGRGeometryUniquePtr shape) {
        auto& whole = collected.at(layer.rowOfRecord.at(record));
        if (!whole) whole = std::make_unique<OGRMultiPolygon>();
        OGRGeometryUniquePtr parts(OGRGeometryFactory::forceToMultiPolygon(shape.release()));
        for (const auto* part : *parts->toMultiPolygon()) whole->addGeometry(part);
    });
    std::vector<OGRGeometryUniquePtr> shapes;
    for (auto& whole : collected) shapes.push_back(united(std::move(whole)));
    return shapes;
}

void writeRecords(GDALDataset& dataset, const GeoPackageLayer& layer,
                  std::span<const ITable* const> tables) {
    OGRSpatialReference system;
    if (!layer.crs.empty()) system = spatialReference(layer.crs);
    auto shapes = shapesOf(layer);
    OGRLayer& features = createLayer(dataset, layer.attributes, wkbMultiPolygon,
                                     layer.crs.empty() ? nullptr : &system);
    for (std::size_t row = 0; row < shapes.size(); ++row) {
        addRecord(features, layer.attributes, row, std::move(shapes[row]));
    }
    for (const ITable* table : tables) {
        OGRLayer& records = createLayer(dataset, *table, wkbNone, nullptr);
        for (std::size_t row = 0; row < table->recordCount(); ++row) {
            addRecord(records, *table, row, nullptr);
        }
    }
}

void requireRecords(GDALDataset& dataset, const ITable& table) {
    OGRLayer* layer = dataset.GetLayerByName(table.name().c_str());
    if (!layer || layer->GetFeatureCount() != static_cast<GIntBig>(table.recordCount())) {
        throw PlatformError("the table " + table.name() +
                            " does not read back as it was written: the disk may be full");
    }
}

}  // namespace

void exportGeoPackage(const std::string& path, const GeoPackageLayer& layer,
                      std::span<const ITable* const> tables) {
    initialiseGdal();
    auto* driver = GetGDALDriverManager()->GetDriverByName("GPKG");
    if (!driver) throw PlatformError("This GDAL cannot write GeoPackages");
    CPLErrorReset();
    try {
        UnfinishedFile file(path);
        const GdalFailures failures;  // those of the last flush are told to nobody else
        DatasetPtr dataset(driver->Create(file.path().c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        if (!dataset) throw PlatformError(gdalMessage("the folder may not be writable"));
        if (dataset->StartTransaction() != OGRERR_NONE) throw PlatformError(gdalMessage("locked"));
        writeRecords(*dataset, layer, tables);
        if (dataset->CommitTransaction() != OGRERR_NONE) {
            throw PlatformError(gdalMessage("the disk may be full"));
        }
        dataset.reset();
        if (failures.any()) throw PlatformError(failures.first());
        dataset.reset(
            GDALDataset::Open(file.path().c_str(), GDAL_OF_VECTOR, kVectorDrivers.data()));
        if (!dataset) throw PlatformError(gdalMessage("it does not open again"));
        requireRecords(*dataset, layer.attributes);
        for (const ITable* table : tables) requireRecords(*dataset, *table);
        dataset.reset();
        file.finish();
    } catch (const PlatformError& e) {
        throw PlatformError("Cannot write " + path + ": " + e.what(), {.file = path});
    }
}

}  // namespace velmora::platform
