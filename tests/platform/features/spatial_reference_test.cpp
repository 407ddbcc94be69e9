// SPDX-License-Identifier: MIT
#include "platform/features/spatial_reference.h"

#include <cpl_error.h>
#include <cpl_string.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_platform.h"

namespace velmora::platform {
namespace {

TEST(SpatialReference, ProjectsToNad83) {
    SpatialReferenceFactory systems;
    const std::string utm = systems.createProjected(26912);
    const std::string nad83 = systems.createGeographic(4269);
    // The middle of zone 12 is 111 W; 4427757 m north of the equator on it is 40 N.
    const auto p = systems.project({{500000, 4427757.219}}, utm, nad83).at(0);
    EXPECT_NEAR(p.x, -111, 1e-9);
    EXPECT_NEAR(p.y, 40, 1e-8);
    EXPECT_TRUE(systems.isGeographic(nad83));
    EXPECT_FALSE(systems.isGeographic(utm));
    EXPECT_EQ(systems.metresPerUnit(utm), 1);
    EXPECT_EQ(systems.name(utm), "NAD83 / UTM zone 12N (EPSG:26912)");
}

TEST(SpatialReference, TheEsriFormMeansTheSame) {
    SpatialReferenceFactory systems;
    for (const int code : {26912, 8826, 32112, 5070}) {
        const std::string crs = systems.createProjected(code);
        EXPECT_TRUE(sameCoordinateSystem(crs, wktFromEsri(esriWkt(crs)))) << code;
    }
    EXPECT_FALSE(
        sameCoordinateSystem(systems.createProjected(26912), systems.createProjected(26911)));
    EXPECT_EQ(wktFromEsri(""), "");
}

TEST(SpatialReference, MistakesAreTold) {
    SpatialReferenceFactory systems;
    EXPECT_THROW(systems.createGeographic(26912), PlatformError);
    EXPECT_THROW(systems.createProjected(4269), PlatformError);
    EXPECT_THROW(systems.createProjected(1), PlatformError);
    EXPECT_THROW(systems.isGeographic("nonsense"), PlatformError);
    EXPECT_THROW(systems.project({{1e30, 1e30}}, systems.createProjected(26912),
                                 systems.createGeographic(4269)),
                 PlatformError);
}

// PROJ without its database while the object lives.
class NoDatabase {
  public:
    NoDatabase() : paths_(OSRGetPROJSearchPaths()) {
        const char* const none[] = {"/nowhere", nullptr};
        OSRSetPROJSearchPaths(none);
    }
    ~NoDatabase() {
        OSRSetPROJSearchPaths(paths_);
        CSLDestroy(paths_);
    }
    NoDatabase(const NoDatabase&) = delete;
    NoDatabase& operator=(const NoDatabase&) = delete;

  private:
    char** paths_;
};

// A database that cannot be read makes systems that are not known, or others: never that.
TEST(SpatialReference, ADatabaseThatCannotBeReadIsTold) {
    SpatialReferenceFactory systems;
    const test::TempFolder folder;
    const std::string crs = systems.createProjected(26913);
    const std::string other = systems.createProjected(26914);
    const std::string esri = esriWkt(other);
    test::TestPlatform platform;
    platform.features().createFeatureClass(folder.file("p.shp"), false, other,
                                           {{"N", FieldType::number, 10, 2}}, {{{{1, 2}}, {1.0}}});
    const auto told = testing::ThrowsMessage<PlatformError>(testing::HasSubstr("proj.db"));
    std::thread([&] {  // a thread that has opened the database keeps it
        const NoDatabase none;
        EXPECT_THAT([&] { systems.createProjected(26915); }, told);
        EXPECT_THAT([&] { wktFromEsri(esri); }, told);
        EXPECT_THAT([&] { platform.features().openFeatureClass(folder.file("p.shp")); }, told);
        EXPECT_THAT([&] { esriWkt(crs); }, told);
        const auto grid = std::make_shared<MemoryRaster>(Grid({4, 4, 0, 0, 1, crs}, 1.0F));
        const auto workspace = platform.rasters().openFromFolder(folder.path());
        EXPECT_THAT([&] { workspace->save(std::array{RasterToSave{"g", grid, "GRID"}}); }, told);
    })
        .join();
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        EXPECT_EQ(entry.path().stem(), "p");
    }
    EXPECT_TRUE(sameCoordinateSystem(other, wktFromEsri(esri)));
    EXPECT_EQ(platform.features().openFeatureClass(folder.file("p.shp"))->recordCount(), 1U);
    EXPECT_NE(esriWkt(crs), "");
}

// What GDAL reports and goes on, and what PROJ throws through it.
TEST(SpatialReference, ADatabaseThatFailsLaterIsTold) {
    const auto told = testing::ThrowsMessage<PlatformError>(testing::HasSubstr("proj.db"));
    const auto report = [](const char* text) {
        return [=] { lookUp([=] { CPLError(CE_Failure, CPLE_AppDefined, "%s", text); }); };
    };
    EXPECT_THAT(report("SQLite error on SELECT name: disk I/O error"), told);
    EXPECT_THAT(report("PROJ: proj_identify: Open of /usr/share/proj/proj.db failed"), told);
    EXPECT_NO_THROW(report("missing , or ]")());
    EXPECT_THAT([] { lookUp([] { throw std::runtime_error("SELECT"); }); }, told);
    EXPECT_THAT([] { lookUp([] { throw PlatformError("a layer"); }); },
                testing::ThrowsMessage<PlatformError>("a layer"));
}

}  // namespace
}  // namespace velmora::platform
