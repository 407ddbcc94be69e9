// SPDX-License-Identifier: MIT
// A shapefile of any content gives its records and shapes, or is refused. The input is the files
// .shp, .shx and .dbf, each after its length, and the .prj.
#include <cstdlib>

#include "platform/features/feature_workspace.h"
#include "platform/features/polygon_reader.h"
#include "platform/features/spatial_reference.h"
#include "platform/platform.h"
#include "tests/fuzz/harness.h"

using namespace velmora;
using fuzz::require;
using fuzz::tried;

namespace {

void readAll(const IFeatureClass& features) {
    for (std::size_t record = 0; record < features.recordCount(); ++record) {
        for (const Field& field : features.fields()) {
            tried([&] { features.value(record, field.name); });
        }
        require(features.placeInFile(record) >= record);
    }
    features.extent();
    tried([&] { require(features.points(features.crs()).size() == features.recordCount()); });
    tried([&] { require(features.areas().size() == features.recordCount()); });
    if (features.holdsPolygons()) {
        tried([&] {
            platform::forEachPolygon(features.path(), features.crs(),
                                     [&](std::size_t record, const OGRGeometryUniquePtr&) {
                                         require(record < features.recordCount());
                                     });
        });
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryFolder& folder = fuzz::memoryFolder();
    static const bool ready = [] {
        platform::keepLibrariesQuiet();
        // A search of all known systems for each input costs more than everything else together.
        return ::setenv("USE_OSR_FIND_MATCHES", "NO", 1) == 0;
    }();
    static platform::SpatialReferenceFactory systems;
    static platform::FeatureWorkspaceFactory workspace(systems);
    (void)ready;
    std::string_view input = fuzz::text(data, size);
    const std::string path = folder.write("f.shp", fuzz::takePart(input));
    folder.write("f.shx", fuzz::takePart(input));
    folder.write("f.dbf", fuzz::takePart(input));
    folder.write("f.prj", input);
    tried([&] { readAll(*workspace.openFeatureClass(path)); });
    return 0;
}
