// SPDX-License-Identifier: MIT
// A grid folder of any content is read, refused or left to others. The input is the header (308
// bytes), the bounds (32), the index after its length, and the tiles.
#include "platform/grid/esri_grid.h"

#include "gis/memory_raster.h"
#include "tests/fuzz/harness.h"

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryFolder& folder = fuzz::memoryFolder();
    std::string_view input = fuzz::text(data, size);
    const auto take = [&](std::size_t count) {
        const std::string_view part = input.substr(0, count);
        input.remove_prefix(part.size());
        return part;
    };
    folder.write("hdr.adf", take(308));
    folder.write("dblbnd.adf", take(32));
    folder.write("w001001x.adf", fuzz::takePart(input));
    folder.write("w001001.adf", input);
    fuzz::tried([&] {
        const RasterPtr raster = platform::openEsriGrid(folder.file(""));
        if (raster && raster->geometry().cells() < 1000000) wholeGrid(*raster);
    });
    return 0;
}
