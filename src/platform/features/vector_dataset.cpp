// SPDX-License-Identifier: MIT
#include "platform/features/vector_dataset.h"

#include <cpl_error.h>

#include <string_view>

#include "gis/errors.h"
#include "platform/features/shapefile_check.h"
#include "platform/features/spatial_reference.h"
#include "platform/grid/gdal_raster.h"

namespace velmora::platform {

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
        throw PlatformError("Cannot open " + path + ": " +
                            gdalMessage("it is no shapefile, dBASE table or GeoPackage that holds "
                                        "features or records"));
    }
    return opened;
}

GdalFailures::GdalFailures() { CPLPushErrorHandlerEx(hear, this); }
GdalFailures::~GdalFailures() { CPLPopErrorHandler(); }

void CPL_STDCALL GdalFailures::hear(CPLErr kind, CPLErrorNum, const char* text) {
    auto* self = static_cast<GdalFailures*>(CPLGetErrorHandlerUserData());
    if (kind < CE_Failure) return;
    const std::string_view said = text;
    const bool database = said.find("SQLite") != said.npos || said.find("proj.db") != said.npos;
    if (database && self->database_.empty()) self->database_ = said;
    if (self->any_) return;
    self->any_ = true;
    self->first_ = said;
}

OGRFeatureUniquePtr nextFeature(OGRLayer& layer, const std::string& path) {
    const GdalFailures failures;
    OGRFeatureUniquePtr feature(layer.GetNextFeature());
    if (!failures.any()) return feature;
    throw PlatformError(
        "Cannot read " +
        (feature ? "record " + std::to_string(feature->GetFID() + 1) + " of " : std::string()) +
        path + ": " + failures.first());
}

}  // namespace velmora::platform
