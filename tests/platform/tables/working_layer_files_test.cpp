// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "gis/working_layer.h"
#include "tests/support/disk_world.h"

namespace velmora {
namespace {

TEST(WorkingLayerFiles, ValuesThatWereNotSetKeepTheirTextInTheFile) {
    test::DiskWorld world;
    IFeatureWorkspaceFactory& features = world.platform.features();
    const std::string path = world.folder.file("s.shp");
    features.createFeatureClass(path, false, "", {{"RefPPT", FieldType::number, 10, 3}},
                                {{{{1, 2}}, {0.5}}, {{{3, 4}}, {0.25}}});
    WorkingLayer working(features.openFeatureClass(path), "RefPPT");
    working.setValue(0, FieldValue());
    working.store(features);
    EXPECT_TRUE(isNull(features.openFeatureClass(path)->value(0, "RefPPT")));
    EXPECT_NE(test::contentOf(world.folder.file("s.dbf")).find("0.250"), std::string::npos);
    EXPECT_EQ(test::contentOf(world.folder.file("s.dbf")).find("0.500"), std::string::npos);
}

}  // namespace
}  // namespace velmora
