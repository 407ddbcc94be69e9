// SPDX-License-Identifier: MIT
#include "platform/features/spatial_reference.h"

#include <gtest/gtest.h>

#include "gis/errors.h"

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

}  // namespace
}  // namespace velmora::platform
