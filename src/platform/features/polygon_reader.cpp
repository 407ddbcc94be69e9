// SPDX-License-Identifier: MIT
#include "platform/features/polygon_reader.h"

#include <cpl_error.h>

#include <memory>
#include <vector>

#include "gis/errors.h"
#include "platform/features/ogr_table.h"
#include "platform/features/spatial_reference.h"
#include "platform/grid/gdal_raster.h"

namespace velmora::platform {

namespace {

bool isPolygon(const OGRGeometry& geometry) {
    const auto type = wkbFlatten(geometry.getGeometryType());
    return type == wkbPolygon || type == wkbMultiPolygon;
}

std::unique_ptr<OGRCoordinateTransformation> transformation(const OGRLayer& layer,
                                                            const std::string& crs) {
    auto& source = const_cast<OGRLayer&>(layer);
    const std::string own = wktOf(source.GetSpatialRef());
    if (own.empty() || crs.empty() || sameCoordinateSystem(own, crs)) return nullptr;
    const OGRSpatialReference from = spatialReference(own);
    const OGRSpatialReference to = spatialReference(crs);
    std::unique_ptr<OGRCoordinateTransformation> made(
        OGRCreateCoordinateTransformation(&from, &to));
    if (!made) throw PlatformError("No way from " + own + " to " + crs);
    return made;
}

}  // namespace

void forEachPolygon(const std::string& path, const std::string& crs,
                    const std::function<void(std::size_t record, OGRGeometryUniquePtr)>& visit) {
    CPLErrorReset();
    const VectorDatasetPtr dataset(
        GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY));
    OGRLayer* layer = dataset && dataset->GetLayerCount() > 0 ? dataset->GetLayer(0) : nullptr;
    if (!layer) {
        throw PlatformError("Cannot open " + path + ": " + gdalMessage("it holds no features"));
    }
    const auto transform = transformation(*layer, crs);
    std::vector<const char*> ignored;
    for (int i = 0; i < layer->GetLayerDefn()->GetFieldCount(); ++i) {
        ignored.push_back(layer->GetLayerDefn()->GetFieldDefn(i)->GetNameRef());
    }
    ignored.push_back(nullptr);
    layer->SetIgnoredFields(ignored.data());
    std::size_t record = 0;
    for (; const OGRFeatureUniquePtr feature{layer->GetNextFeature()}; ++record) {
        OGRGeometryUniquePtr geometry(feature->StealGeometry());
        if (!geometry || geometry->IsEmpty()) continue;
        const std::string where = "Feature " + std::to_string(record + 1) + " of " + path;
        if (!isPolygon(*geometry)) {
            throw PlatformError(where + " is no polygon: choose a polygon shapefile");
        }
        if (transform && geometry->transform(transform.get()) != OGRERR_NONE) {
            throw PlatformError(where + " has no image in the coordinate system of the run");
        }
        visit(record, std::move(geometry));
    }
}

}  // namespace velmora::platform
