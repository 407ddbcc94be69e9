// SPDX-License-Identifier: MIT
#include "platform/features/shapefile_writer.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/files/gdal_library.h"
#include "platform/platform.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

// A table as the library writes it, record for record with an end mark.
std::string tableOfGdal(const std::string& path, OGRwkbGeometryType type, int records) {
    auto* driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
    DatasetPtr dataset(driver->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRLayer* layer = dataset->CreateLayer("t", nullptr, type, nullptr);
    OGRFieldDefn number("N", OFTReal);
    number.SetWidth(9);
    number.SetPrecision(3);
    layer->CreateField(&number);
    for (int i = 0; i < records; ++i) {
        OGRFeature feature(layer->GetLayerDefn());
        feature.SetField(0, i + 0.5);
        EXPECT_EQ(layer->CreateFeature(&feature), OGRERR_NONE);
    }
    dataset.reset();
    return test::contentOf(path + "/t.dbf");
}

TEST(ShapefileWriter, ATableEndsAsGdalEndsIt) {
    const test::TempFolder folder;
    const Platform platform;
    for (const OGRwkbGeometryType type : {wkbNone, wkbPolygon}) {
        for (const int records : {0, 1, 300}) {
            const std::string peer = folder.file("peer");
            std::filesystem::remove_all(peer);
            writeLayer(folder.file("t"), type, "", {{"N", FieldType::number, 9, 3}},
                       TextEncoding::latin1, [&](const LayerWriter& add) {
                           for (int i = 0; i < records; ++i) add({i + 0.5}, nullptr);
                       });
            EXPECT_EQ(test::contentOf(folder.file("t.dbf")), tableOfGdal(peer, type, records))
                << records;
        }
    }
}

}  // namespace
}  // namespace velmora::platform
