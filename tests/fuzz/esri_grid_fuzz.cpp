// SPDX-License-Identifier: MIT
// A grid folder of any content is read, refused or left to others. The input is cut into the header
// (308 bytes), the bounds (32), and the rest, which serves as index and as tiles.
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "platform/grid/esri_grid.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string folder =
        (std::filesystem::temp_directory_path() / ("velmora-fuzz-" + std::to_string(getpid())))
            .string();
    std::filesystem::create_directories(folder);
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const auto part = [&](std::size_t from, std::size_t count) {
        return from < bytes.size() ? bytes.substr(from, count) : std::string();
    };
    const auto write = [&](const char* name, const std::string& content) {
        std::ofstream(folder + "/" + name, std::ios::binary) << content;
    };
    write("hdr.adf", part(0, 308));
    write("dblbnd.adf", part(308, 32));
    write("w001001x.adf", part(340, std::string::npos));
    write("w001001.adf", part(340, std::string::npos));
    try {
        const velmora::RasterPtr raster = velmora::platform::openEsriGrid(folder);
        if (raster && raster->geometry().cells() < 1000000) velmora::wholeGrid(*raster);
    } catch (const velmora::PlatformError&) {
    }
    return 0;
}
