// SPDX-License-Identifier: MIT
#include "platform/features/vector_dataset.h"

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/features/shapefile_check.h"
#include "platform/features/spatial_reference.h"
#include "platform/files/byte_source.h"

namespace velmora::platform {

namespace {

// GDAL takes a .prj that it cannot read for none, and the features would lie elsewhere.
void requireSystem(OGRLayer& layer, const std::string& path) {
    if (withoutEnding(path, ".shp") == path || layer.GetSpatialRef()) return;
    const std::string system = fileBeside(path, "prj");
    if (system.empty() || ByteSource(system).size() == 0) return;
    throw PlatformError(
        "Cannot read the coordinate system of " + path + ": " + system +
            " tells none that is understood; mend it, or delete it when the features lie "
            "in the system of the run",
        {.file = path});
}

[[noreturn]] void failedAt(const std::string& path, std::size_t record,
                           const GdalFailures& failures) {
    throw PlatformError("Cannot read record " + std::to_string(record + 1) + " of " + path + ": " +
                            failures.first(),
                        {.file = path, .record = record + 1});
}

}  // namespace

VectorLayer openVectors(const std::string& path) {
    requireWholeFiles(path);
    CPLErrorReset();
    VectorLayer opened;
    lookUp([&] {
        opened.dataset.reset(GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY,
                                               kVectorDrivers.data()));
    });
    if (opened.dataset && opened.dataset->GetLayerCount() > 0) {
        opened.layer = opened.dataset->GetLayer(0);
    }
    if (!opened.layer) {
        throw PlatformError(
            "Cannot open " + path + ": " +
                gdalMessage("it is no shapefile, dBASE table or GeoPackage that holds "
                            "features or records"),
            {.file = path});
    }
    requireSystem(*opened.layer, path);
    return opened;
}

OGRFeatureUniquePtr nextFeature(OGRLayer& layer, const std::string& path) {
    const GdalFailures failures;
    OGRFeatureUniquePtr feature(layer.GetNextFeature());
    if (!failures.any()) return feature;
    if (feature) failedAt(path, static_cast<std::size_t>(feature->GetFID()), failures);
    throw PlatformError("Cannot read " + path + ": " + failures.first(), {.file = path});
}

OGRFeatureUniquePtr featureAt(OGRLayer& layer, const std::string& path, std::size_t record) {
    const GdalFailures failures;
    OGRFeatureUniquePtr feature(layer.GetFeature(static_cast<GIntBig>(record)));
    if (failures.any()) failedAt(path, record, failures);
    return feature;
}

}  // namespace velmora::platform
