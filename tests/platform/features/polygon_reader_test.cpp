// SPDX-License-Identifier: MIT
#include "platform/features/polygon_reader.h"

#include <gtest/gtest.h>

#include "platform/features/shapefile_writer.h"
#include "platform/platform.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

OGRGeometryUniquePtr fromText(const char* text) {
    OGRGeometry* shape = nullptr;
    OGRGeometryFactory::createFromWkt(text, nullptr, &shape);
    return OGRGeometryUniquePtr(shape);
}

std::vector<unsigned char> bytesOf(const OGRGeometry& shape) {
    std::vector<unsigned char> bytes(shape.WkbSize());
    shape.exportToWkb(wkbNDR, bytes.data());
    return bytes;
}

// Shapes of one ring, which are read from the file's own bytes, between others.
TEST(PolygonReader, GivesTheShapesThatGdalGives) {
    const test::TempFolder folder;
    const Platform platform;
    const std::string path = folder.file("p.shp");
    const std::vector<const char*> texts = {
        "POLYGON ((0 0,0 9.1,9.3 9.7,9 0,0 0))",
        "POLYGON ((9 0,0 0,0 9,9 0))",
        "POLYGON ((0 0,0 9,9 9,9 0,0 0),(1 1,2 1,2 2,1 1))",
        "MULTIPOLYGON (((0 0,0 9,9 9,0 0)),((20 20,20 29,29 29,20 20)))",
        "",
        "POLYGON ((100 0,100 9,109 9,109 4,104 4,104 0,100 0))",
        "POLYGON ((5 5,5 6,6 6,5 5))"};
    writeLayer(path, wkbPolygon, "", {{"N", FieldType::number, 8, 0}}, TextEncoding::latin1,
               [&](const LayerWriter& add) {
                   for (const char* text : texts) {
                       add({1.0}, *text ? fromText(text) : OGRGeometryUniquePtr());
                   }
               });
    // The second record is deleted.
    std::string table = test::contentOf(folder.file("p.dbf"));
    table[table.size() - 1 - 9 * (texts.size() - 1)] = '*';
    test::write(folder.file("p.dbf"), table);

    const DatasetPtr dataset(GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR));
    PolygonReader reader(path, "");
    std::size_t record = 0;
    std::size_t compared = 0;
    for (const auto& feature : *dataset->GetLayer(0)) {
        const OGRGeometry* shape = feature->GetGeometryRef();
        if (shape) {
            const auto polygon = reader.next();
            ASSERT_TRUE(polygon);
            EXPECT_EQ(polygon->record, record);
            EXPECT_EQ(bytesOf(*polygon->shape), bytesOf(*shape)) << record;
            ++compared;
        }
        ++record;
    }
    EXPECT_FALSE(reader.next());
    EXPECT_FALSE(reader.next());
    EXPECT_EQ(record, texts.size() - 1);
    EXPECT_EQ(compared, texts.size() - 2);
}

}  // namespace
}  // namespace velmora::platform
