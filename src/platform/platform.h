// SPDX-License-Identifier: MIT
#pragma once

#include "gis/application.h"
#include "platform/analysis/analysis_factory.h"
#include "platform/analysis/parallel_loop.h"
#include "platform/features/feature_workspace.h"
#include "platform/features/spatial_reference.h"
#include "platform/files/file_system.h"
#include "platform/grid/raster_workspace.h"
#include "platform/tables/connection_factory.h"
#include "platform/tables/joined_layer.h"

namespace velmora::platform {

// Everything that the platform offers, for a host to hand to the extension.
class Platform : public IPlatform {
  public:
    IRasterWorkspaceFactory& rasters() override { return rasters_; }
    IFeatureWorkspaceFactory& features() override { return features_; }
    IConnectionFactory& connections() override { return connections_; }
    IAnalysisFactory& analysis() override { return analysis_; }
    ISpatialReferenceFactory& spatialReferences() override { return spatialReferences_; }
    IMemoryRelationshipClassFactory& memoryRelationships() override { return relationships_; }
    ICalculator& calculator() override { return calculator_; }
    IParallelLoop& loop() override { return loop_; }
    IFileSystem& files() override { return files_; }
    IClock& clock() override { return clock_; }

  private:
    SpatialReferenceFactory spatialReferences_;
    RasterWorkspaceFactory rasters_;
    FeatureWorkspaceFactory features_{spatialReferences_};
    ConnectionFactory connections_{features_};
    AnalysisFactory analysis_{spatialReferences_};
    MemoryRelationshipClassFactory relationships_;
    Calculator calculator_;
    ParallelLoop loop_;
    FileSystem files_;
    SystemClock clock_;
};

}  // namespace velmora::platform
