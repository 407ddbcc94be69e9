// SPDX-License-Identifier: MIT
// Features and records through GDAL, where a failure that GDAL reports is one.
#pragma once

#include <ogrsf_frmts.h>

#include <array>
#include <memory>
#include <string>

namespace velmora::platform {

struct VectorDatasetCloser {
    void operator()(GDALDataset* dataset) const { GDALClose(dataset); }
};
using VectorDatasetPtr = std::unique_ptr<GDALDataset, VectorDatasetCloser>;

// GDAL's drivers that may open a data set, whatever its name: no description of a file elsewhere
// and nothing on a network is followed. The list ends with a null pointer.
constexpr std::array<const char*, 3> kVectorDrivers = {"ESRI Shapefile", "GPKG", nullptr};

struct VectorLayer {
    VectorDatasetPtr dataset;
    OGRLayer* layer = nullptr;  // the dataset's first
};

// Throws PlatformError naming the file when it is damaged, cut short (shapefile_check.h) or cannot
// be opened.
VectorLayer openVectors(const std::string& path);

// Hears what GDAL reports as a failure on this thread while the object lives, which many of its
// functions do and go on.
class GdalFailures {
  public:
    GdalFailures();
    ~GdalFailures();
    GdalFailures(const GdalFailures&) = delete;
    GdalFailures& operator=(const GdalFailures&) = delete;
    bool any() const { return any_; }
    const std::string& first() const { return first_; }
    // The first that says that the database of coordinate systems cannot be read, "" for none.
    const std::string& database() const { return database_; }

  private:
    static void CPL_STDCALL hear(CPLErr kind, CPLErrorNum number, const char* text);
    bool any_ = false;
    std::string first_;
    std::string database_;
};

// The layer's next feature, nothing behind the last. Throws PlatformError naming the file `path`
// when it cannot be read.
OGRFeatureUniquePtr nextFeature(OGRLayer& layer, const std::string& path);

}  // namespace velmora::platform
