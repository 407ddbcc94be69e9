// SPDX-License-Identifier: MIT
// GDAL as the library that opens files: its start, its datasets, and what it reports.
#pragma once

#include <cpl_error.h>
#include <gdal_priv.h>

#include <array>
#include <memory>
#include <string>

namespace velmora::platform {

// Registers GDAL's drivers, once in a process.
void initialiseGdal();

// GDAL's last error message, or `otherwise` when there is none.
std::string gdalMessage(const std::string& otherwise);

struct DatasetCloser {
    void operator()(GDALDataset* dataset) const { GDALClose(dataset); }
};
using DatasetPtr = std::unique_ptr<GDALDataset, DatasetCloser>;

// GDAL's drivers that may open features and records, whatever the file's name: no description of a
// file elsewhere and nothing on a network is followed. The list ends with a null pointer.
constexpr std::array<const char*, 3> kVectorDrivers = {"ESRI Shapefile", "GPKG", nullptr};

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

}  // namespace velmora::platform
