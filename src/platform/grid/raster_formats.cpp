// SPDX-License-Identifier: MIT
#include "platform/grid/raster_formats.h"

#include <algorithm>
#include <array>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/posix_file.h"

namespace velmora::platform {

const std::vector<std::string>& rasterEndings() {
    static const std::vector<std::string> endings = {"tif",  "tiff",  // GeoTIFF
                                                     "asc",           // ESRI ASCII grid
                                                     "img",           // Erdas Imagine
                                                     "bil",  "bip",  "bsq",
                                                     "flt",                  // ESRI .hdr labelled
                                                     "dat",                  // ENVI
                                                     "dem",                  // USGS DEM
                                                     "dt0",  "dt1",  "dt2",  // DTED
                                                     "hgt",                  // SRTM
                                                     "sdat",                 // SAGA
                                                     "grd",                  // Surfer, R
                                                     "rst",                  // Idrisi
                                                     "map"};                 // PCRaster
    return endings;
}

bool hasRasterEnding(const std::string& path) {
    const std::string name = fileName(path);
    const auto dot = name.rfind('.');
    if (dot == std::string::npos) return false;
    return std::ranges::any_of(rasterEndings(), [&](const std::string& ending) {
        return sameIgnoringCase(name.substr(dot + 1), ending);
    });
}

bool isGridFolder(const std::string& path) { return isFile(joinedPath(path, "hdr.adf")); }

bool isRasterDataset(const std::string& path) {
    try {
        return isGridFolder(path) || (hasRasterEnding(path) && isFile(path));
    } catch (const PlatformError&) {
        return false;
    }
}

// Not Surfer's text form, whose reader takes the decimal mark of the locale.
const char* const* rasterDrivers() {
    static constexpr std::array<const char*, 16> kDrivers = {
        "AIG",     "GTiff", "AAIGrid", "HFA",   "EHdr",    "ENVI", "USGSDEM",  "DTED",
        "SRTMHGT", "SAGA",  "GSBG",    "GS7BG", "RRASTER", "RST",  "PCRaster", nullptr};
    return kDrivers.data();
}

void requireLocalPath(const std::string& path) {
    if (path.starts_with("/vsi") || path.find("://") != std::string::npos) {
        throw PlatformError(
            "The raster " + path +
                " is no file or folder of this machine: fetch it first, for example "
                "with gdal_translate",
            {.file = path});
    }
}

}  // namespace velmora::platform
