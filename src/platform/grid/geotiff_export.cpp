// SPDX-License-Identifier: MIT
#include "platform/grid/geotiff_export.h"

#include <array>
#include <cstring>
#include <vector>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/features/spatial_reference.h"
#include "platform/files/gdal_library.h"
#include "platform/files/posix_file.h"
#include "platform/files/unfinished_file.h"
#include "platform/grid/gdal_raster.h"

namespace velmora::platform {

namespace {

// Throws unless everything is written, what the closing writes too.
void writeCog(GDALDriver& driver, GDALDataset& whole, const std::string& path) {
    CPLErrorReset();
    const char* const options[] = {"COMPRESS=DEFLATE", "PREDICTOR=YES", nullptr};
    DatasetPtr copy(
        driver.CreateCopy(path.c_str(), &whole, 0, const_cast<char**>(options), nullptr, nullptr));
    const bool made = copy != nullptr;
    copy.reset();
    if (!made || CPLGetLastErrorType() >= CE_Failure) {
        throw PlatformError(gdalMessage("the folder may not be writable"));
    }
}

// Throws when a file does not hold the values that were written into it.
void requireSame(const IRaster& written, const IRaster& found) {
    const GridGeometry& geometry = written.geometry();
    const auto columns = static_cast<std::size_t>(geometry.columns);
    std::vector<float> expected(columns);
    std::vector<float> values(columns);
    for (int row = 0; row < geometry.rows; ++row) {
        written.read({0, row, geometry.columns, 1}, expected);
        found.read({0, row, geometry.columns, 1}, values);
        if (std::memcmp(expected.data(), values.data(), columns * sizeof(float)) != 0) {
            throw PlatformError("row " + std::to_string(row + 1) +
                                " does not read back as it was written: the disk may be full");
        }
    }
}

}  // namespace

void exportGeoTiff(const IRaster& raster, const std::string& path) {
    const GridGeometry& geometry = raster.geometry();
    auto* memory = GetGDALDriverManager()->GetDriverByName("MEM");
    auto* driver = GetGDALDriverManager()->GetDriverByName("COG");
    if (!memory || !driver) throw PlatformError("This GDAL cannot write Cloud Optimized GeoTIFF");
    DatasetPtr whole(memory->Create("", geometry.columns, geometry.rows, 1, GDT_Float32, nullptr));
    if (!whole) throw PlatformError("Not enough memory to export " + path, {.file = path});
    std::array<double, 6> transform = {geometry.xMin,     geometry.cellSize, 0, geometry.yMax, 0,
                                       -geometry.cellSize};
    whole->SetGeoTransform(transform.data());
    if (!geometry.crs.empty()) {
        const OGRSpatialReference system = spatialReference(geometry.crs);
        whole->SetSpatialRef(&system);
    }
    GDALRasterBand* band = whole->GetRasterBand(1);
    band->SetNoDataValue(static_cast<double>(kNoData));
    std::vector<float> row(static_cast<std::size_t>(geometry.columns));
    for (int r = 0; r < geometry.rows; ++r) {
        raster.read({0, r, geometry.columns, 1}, row);
        if (band->RasterIO(GF_Write, 0, r, geometry.columns, 1, row.data(), geometry.columns, 1,
                           GDT_Float32, 0, 0, nullptr) != CE_None) {
            throw PlatformError("Cannot export " + path + ": " + gdalMessage("out of memory"),
                                {.file = path});
        }
    }
    try {
        UnfinishedFile file(path);
        writeCog(*driver, *whole, file.path());
        requireSame(raster, *openGdalRaster(file.path()));
        file.finish();
    } catch (const PlatformError& e) {
        throw PlatformError("Cannot write " + path + ": " + e.what(), {.file = path});
    }
}

}  // namespace velmora::platform
