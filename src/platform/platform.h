// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "gis/application.h"
#include "platform/features/geopackage_export.h"
#include "platform/files/file_system.h"
#include "platform/grid/geotiff_export.h"
#include "platform/grid/raster_formats.h"
#include "platform/grid/statistics_files.h"
#include "platform/records/journal.h"
#include "platform/records/verification.h"
#include "platform/tables/access_import.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

// Everything that the platform offers, for a host to hand to the extension. This header and what it
// includes is all that a host knows of the platform; its libraries stay behind it.
class Platform : public IPlatform {
  public:
    Platform();
    ~Platform() override;
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;

    IRasterWorkspaceFactory& rasters() override;
    IFeatureWorkspaceFactory& features() override;
    IConnectionFactory& connections() override;
    IAnalysisFactory& analysis() override;
    ISpatialReferenceFactory& spatialReferences() override;
    IMemoryRelationshipClassFactory& memoryRelationships() override;
    ICalculator& calculator() override;
    IParallelLoop& loop() override;
    IFileSystem& files() override;
    IClock& clock() override;
    IRunJournal& journal() override;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

// GDAL also prints the errors that the platform raises. A program of its own keeps it from the
// terminal with this; a guest in another program leaves the matter to its host.
void keepLibrariesQuiet();

// GDAL keeps what it has read of rasters in a twentieth of the machine's memory. A program of its
// own bounds that with this to 128 MB, unless the user has set GDAL_CACHEMAX; a guest leaves it.
void boundLibrariesMemory();

}  // namespace velmora::platform
