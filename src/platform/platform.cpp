// SPDX-License-Identifier: MIT
#include "platform/platform.h"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal.h>

#include "platform/analysis/analysis_factory.h"
#include "platform/features/feature_workspace.h"
#include "platform/features/spatial_reference.h"
#include "platform/files/file_system.h"
#include "platform/grid/raster_workspace.h"
#include "platform/tables/connection_factory.h"
#include "platform/tables/joined_layer.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

struct Platform::Parts {
    SpatialReferenceFactory spatialReferences;
    RasterWorkspaceFactory rasters;
    FeatureWorkspaceFactory features{spatialReferences};
    ConnectionFactory connections{features};
    AnalysisFactory analysis{spatialReferences};
    MemoryRelationshipClassFactory relationships;
    Calculator calculator;
    ParallelLoop loop;
    FileSystem files;
    SystemClock clock;
    Journal journal;
};

Platform::Platform() : parts_(std::make_unique<Parts>()) {}
Platform::~Platform() = default;

IRasterWorkspaceFactory& Platform::rasters() { return parts_->rasters; }
IFeatureWorkspaceFactory& Platform::features() { return parts_->features; }
IConnectionFactory& Platform::connections() { return parts_->connections; }
IAnalysisFactory& Platform::analysis() { return parts_->analysis; }
ISpatialReferenceFactory& Platform::spatialReferences() { return parts_->spatialReferences; }
IMemoryRelationshipClassFactory& Platform::memoryRelationships() { return parts_->relationships; }
ICalculator& Platform::calculator() { return parts_->calculator; }
IParallelLoop& Platform::loop() { return parts_->loop; }
IFileSystem& Platform::files() { return parts_->files; }
IClock& Platform::clock() { return parts_->clock; }
IRunJournal& Platform::journal() { return parts_->journal; }

void keepLibrariesQuiet() { CPLSetErrorHandler(CPLQuietErrorHandler); }

void boundLibrariesMemory() {
    constexpr GIntBig kCache = GIntBig{128} << 20U;
    if (CPLGetConfigOption("GDAL_CACHEMAX", nullptr) == nullptr) GDALSetCacheMax64(kCache);
}

}  // namespace velmora::platform
