// SPDX-License-Identifier: MIT
#include "platform/features/geopackage_export.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ogrsf_frmts.h>

#include <array>
#include <filesystem>

#include "gis/errors.h"
#include "gis/memory_table.h"
#include "platform/files/gdal_library.h"
#include "tests/support/crop_fixture.h"

namespace velmora::platform {
namespace {

using testing::HasSubstr;

struct GeoPackageExport : testing::Test {
    test::CropFixture f;
    std::string path = f.folder.file("zones.gpkg");
    MemoryTable zones{"zones", {{"zone", FieldType::text}, {"acft", FieldType::number}}};
    MemoryTable notes{"notes", {{"note", FieldType::text}}};

    // Two squares side by side and one apart, 1000 m wide.
    GeoPackageExport() {
        const auto square = [](const char* key, double x) {
            return test::Shape{
                key, {{x, 4490000}, {x, 4491000}, {x + 1000, 4491000}, {x + 1000, 4490000}}};
        };
        f.makeZones({square("A", 400000), square("B", 405000), square("A", 401000)});
        zones.append({std::string("Ä \"first\" zone"), 1.25});
        zones.append({std::string("B"), FieldValue()});
        notes.append({std::string("1 acre is 4047 m²")});
    }
    void write(const std::vector<std::size_t>& rows) {
        exportGeoPackage(path, {f.settings.Zones, f.geometry().crs, rows, zones},
                         std::array<const ITable*, 1>{&notes});
    }
    DatasetPtr open() const { return DatasetPtr(GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR)); }
};

TEST_F(GeoPackageExport, PolygonsOfARowAreOneShapeWithItsAttributes) {
    write({0, 1, 0});
    const DatasetPtr dataset = open();
    ASSERT_TRUE(dataset);
    EXPECT_EQ(dataset->GetLayerCount(), 2);
    OGRLayer& layer = *dataset->GetLayerByName("zones");
    EXPECT_STREQ(layer.GetSpatialRef()->GetAuthorityCode(nullptr), "26912");
    ASSERT_EQ(layer.GetFeatureCount(), 2);
    const OGRFeatureUniquePtr first(layer.GetNextFeature());
    EXPECT_STREQ(first->GetFieldAsString("zone"), "Ä \"first\" zone");
    EXPECT_EQ(first->GetFieldAsDouble("acft"), 1.25);
    const OGRMultiPolygon& shape = *first->GetGeometryRef()->toMultiPolygon();
    EXPECT_DOUBLE_EQ(shape.get_Area(), 2e6);
    EXPECT_EQ(shape.getNumGeometries(), 1);  // no border between the two
    const OGRFeatureUniquePtr second(layer.GetNextFeature());
    EXPECT_TRUE(second->IsFieldNull(second->GetFieldIndex("acft")));
    EXPECT_DOUBLE_EQ(second->GetGeometryRef()->toMultiPolygon()->get_Area(), 1e6);
    const OGRFeatureUniquePtr note(dataset->GetLayerByName("notes")->GetNextFeature());
    EXPECT_STREQ(note->GetFieldAsString("note"), "1 acre is 4047 m²");
}

TEST_F(GeoPackageExport, AnOlderFileIsReplacedWholeOrStays) {
    write({0, 1, 1});
    zones.append({std::string("C, without a polygon"), 3.0});
    write({0, 1, 0});
    EXPECT_EQ(open()->GetLayerByName("zones")->GetFeatureCount(), 3);
    EXPECT_FALSE(std::filesystem::exists(path + "-journal"));
    f.settings.Zones = f.folder.file("none.shp");
    EXPECT_THAT(
        [&] {
            write({0, 1, 0});
        },
        testing::ThrowsMessage<PlatformError>(
            testing::AllOf(HasSubstr("Cannot write " + path), HasSubstr("none.shp"))));
    EXPECT_EQ(open()->GetLayerByName("zones")->GetFeatureCount(), 3);
    for (const auto& entry : std::filesystem::directory_iterator(f.folder.path())) {
        EXPECT_THAT(entry.path().filename().string(), testing::Not(HasSubstr("unfinished")));
    }
    path = f.folder.file("no folder/zones.gpkg");
    EXPECT_THROW(write({0, 1, 0}), PlatformError);
}

}  // namespace
}  // namespace velmora::platform
