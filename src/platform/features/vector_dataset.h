// SPDX-License-Identifier: MIT
// Features and records through GDAL, where a failure that GDAL reports is one.
#pragma once

#include <ogrsf_frmts.h>

#include <string>

#include "platform/files/gdal_library.h"

namespace velmora::platform {

struct VectorLayer {
    DatasetPtr dataset;
    OGRLayer* layer = nullptr;  // the dataset's first
};

// Throws PlatformError naming the file when it is damaged, cut short (shapefile_check.h) or cannot
// be opened.
VectorLayer openVectors(const std::string& path);

// The layer's next feature, nothing behind the last. Throws PlatformError naming the file `path`
// when it cannot be read.
OGRFeatureUniquePtr nextFeature(OGRLayer& layer, const std::string& path);
// That of a record of the file.
OGRFeatureUniquePtr featureAt(OGRLayer& layer, const std::string& path, std::size_t record);

}  // namespace velmora::platform
