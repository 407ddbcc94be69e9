// SPDX-License-Identifier: MIT
#include "platform/grid/gdal_raster.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <utility>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "platform/features/spatial_reference.h"
#include "platform/files/gdal_library.h"
#include "platform/files/posix_file.h"
#include "platform/grid/raster_formats.h"

namespace velmora::platform {

namespace {

class GdalRaster : public IRaster {
  public:
    GdalRaster(std::string path, DatasetPtr dataset, GridGeometry geometry)
        : path_(std::move(path)), dataset_(std::move(dataset)), geometry_(std::move(geometry)) {
        GDALRasterBand* band = dataset_->GetRasterBand(1);
        int has = 0;
        const double noData = band->GetNoDataValue(&has);
        if (has) noData_ = static_cast<float>(noData);
        hasNoData_ = has != 0;
        const double scale = band->GetScale(&has);
        if (has) scale_ = scale;
        const double offset = band->GetOffset(&has);
        if (has) offset_ = offset;
    }

    const GridGeometry& geometry() const override { return geometry_; }

    void read(const CellBlock& block, std::span<float> values) const override {
        {
            const std::lock_guard lock(mutex_);  // a GDAL dataset serves one thread at a time
            CPLErrorReset();
            if (dataset_->GetRasterBand(1)->RasterIO(
                    GF_Read, block.column, block.row, block.columns, block.rows, values.data(),
                    block.columns, block.rows, GDT_Float32, 0, 0, nullptr) != CE_None ||
                CPLGetLastErrorType() >= CE_Failure) {
                throw PlatformError(
                    "Cannot read the raster " + path_ + ": " + gdalMessage("it may be damaged"),
                    {.file = path_});
            }
        }
        const bool scaled = scale_ != 1 || offset_ != 0;
        for (float& value : values) {
            if ((hasNoData_ && value == noData_) || !std::isfinite(value)) {
                value = kNoData;
            } else if (scaled && value != kNoData) {
                value = static_cast<float>(value * scale_ + offset_);
            }
        }
    }

  private:
    std::string path_;
    DatasetPtr dataset_;
    GridGeometry geometry_;
    mutable std::mutex mutex_;
    float noData_ = kNoData;
    bool hasNoData_ = false;
    double scale_ = 1;
    double offset_ = 0;
};

GridGeometry geometryOf(GDALDataset& dataset, const std::string& path) {
    std::array<double, 6> transform{};
    if (dataset.GetGeoTransform(transform.data()) != CE_None) {
        throw PlatformError("The raster " + path + " has no position on the map", {.file = path});
    }
    const double width = transform[1];
    const double height = -transform[5];
    if (transform[2] != 0 || transform[4] != 0 || !(width > 0) || !(height > 0)) {
        throw PlatformError(
            "The raster " + path + " is rotated or upside down: bring it to north up with gdalwarp",
            {.file = path});
    }
    if (std::fabs(width - height) > 1e-6 * width) {
        throw PlatformError("The raster " + path + " has cells of " + numberText(width) + " x " +
                                numberText(height) +
                                ": bring it to square cells with gdalwarp -tr SIZE SIZE",
                            {.file = path});
    }
    GridGeometry geometry;
    geometry.columns = dataset.GetRasterXSize();
    geometry.rows = dataset.GetRasterYSize();
    geometry.xMin = transform[0];
    geometry.yMax = transform[3];
    geometry.cellSize = width;
    geometry.crs = systemOf(dataset);
    return geometry;
}

// The file of the cells of a raster whose header is a file of its own.
std::string cellFile(const std::string& driver, const std::string& path) {
    if (driver == "RRASTER") return withoutExtension(path) + ".gri";
    if (driver == "SAGA") return withoutExtension(path) + ".sdat";
    return path;
}

// GDAL reads zeros where a plain file of cells is cut short.
void requireWhole(GDALDataset& dataset, const std::string& path) {
    static constexpr std::array kPlain = {"EHdr", "ENVI", "SAGA", "RST", "RRASTER"};
    const std::string driver = dataset.GetDriverName();
    GDALRasterBand* band = dataset.GetRasterBand(1);
    if (std::ranges::find(kPlain, driver) == kPlain.end() ||
        band->GetMetadataItem("NBITS", "IMAGE_STRUCTURE") ||
        dataset.GetMetadataItem("file_compression", "ENVI")) {
        return;
    }
    std::error_code error;
    const auto bytes = std::filesystem::file_size(cellFile(driver, path), error);
    const auto needed =
        static_cast<std::uintmax_t>(dataset.GetRasterXSize()) *
        static_cast<std::uintmax_t>(dataset.GetRasterYSize()) *
        static_cast<std::uintmax_t>(dataset.GetRasterCount()) *
        static_cast<std::uintmax_t>(GDALGetDataTypeSizeBytes(band->GetRasterDataType()));
    if (!error && bytes < needed) {
        throw PlatformError("The raster " + path + " is cut short: its header tells of " +
                                std::to_string(needed) + " bytes, it has " + std::to_string(bytes),
                            {.file = path});
    }
}

}  // namespace

RasterPtr openGdalRaster(const std::string& path) {
    CPLErrorReset();
    requireLocalPath(path);
    DatasetPtr dataset;
    lookUp([&] {
        dataset.reset(
            GDALDataset::Open(path.c_str(), GDAL_OF_RASTER | GDAL_OF_READONLY, rasterDrivers()));
    });
    if (!dataset || dataset->GetRasterCount() < 1) {
        throw PlatformError("Cannot open the raster " + path + ": " +
                                gdalMessage("it is of none of the formats that serve"),
                            {.file = path});
    }
    requireWhole(*dataset, path);
    GridGeometry geometry = geometryOf(*dataset, path);
    return std::make_shared<GdalRaster>(path, std::move(dataset), std::move(geometry));
}

}  // namespace velmora::platform
