// SPDX-License-Identifier: MIT
#include "gis/gis_functions.h"

#include <gtest/gtest.h>

#include <array>

#include "gis/memory_raster.h"
#include "tests/support/fakes.h"
#include "tests/support/worlds.h"

namespace velmora {
namespace {

struct GisFunctions : testing::Test {
    test::MemoryWorld world;
    test::Folder& folder = world.folder;
    test::TestApplication application{world.platform, folder.path()};
};

TEST_F(GisFunctions, BrowsersAskWithTheirTitles) {
    auto& browsers = application.browsers();
    browsers.answers = {"/data/stations.shp", "/data/dem"};
    EXPECT_EQ(BrowseFeatureDataset(browsers), "/data/stations.shp");
    EXPECT_EQ(BrowseRasterDataset(browsers), "/data/dem");
    EXPECT_EQ(BrowseForFolder(browsers, "Folder"), "");
    EXPECT_EQ(browsers.asked, (std::vector<std::string>{"FeatureDatasets Browser",
                                                        "RasterDatasets Browser", "Folder"}));
}

TEST_F(GisFunctions, LastLocationIsEmptyOnFailure) {
    EXPECT_EQ(GetLastBrowseLocation(application.browsers()), "/last");
    application.browsers().locationFails = true;
    EXPECT_EQ(GetLastBrowseLocation(application.browsers()), "");
}

TEST_F(GisFunctions, DeletesRasterDatasets) {
    auto& rasters = application.platform().rasters();
    const Grid grid({2, 2, 0, 2, 1, ""}, 5);
    rasters.openFromFolder(folder.path())
        ->save(std::array{RasterToSave{"TM_Jan", std::make_shared<MemoryRaster>(grid), "GRID"}});
    EXPECT_TRUE(DeleteRasterDataset(rasters, folder.path(), "TM_Jan"));
    EXPECT_FALSE(rasters.openFromFolder(folder.path())->exists("TM_Jan"));
    EXPECT_FALSE(DeleteRasterDataset(rasters, folder.path(), "TM_Jan"));
    EXPECT_FALSE(DeleteRasterDataset(rasters, folder.file("nowhere"), "TM_Jan"));
    EXPECT_TRUE(application.messages().empty());
}

TEST_F(GisFunctions, DeletesFeatureClasses) {
    auto& features = application.platform().features();
    features.createFeatureClass(folder.file("a.shp"), false, "", {{"N", FieldType::text, 5, 0}},
                                {{{{1, 2}}, {std::string("x")}}});
    EXPECT_TRUE(DeleteFeatureClass(features, folder.path(), "a"));
    EXPECT_FALSE(application.platform().files().fileExists(folder.file("a.dbf")));
    EXPECT_FALSE(DeleteFeatureClass(features, folder.path(), "a"));
}

TEST_F(GisFunctions, ColorRampFailureIsShownUnderItsTitle) {
    test::FakeLayer good("/x/RefET", false);
    ApplyColorRamp(application.prompts(), good, {0, 255, 0}, {50, 50, 100});
    EXPECT_EQ(good.ramp.to, (Rgb{50, 50, 100}));
    EXPECT_EQ(good.ramp.size, 256);
    EXPECT_EQ(good.ramp.algorithm, 1);
    test::FakeLayer bad("/x/RefET", true);
    ApplyColorRamp(application.prompts(), bad, {0, 255, 0}, {50, 50, 100});
    EXPECT_EQ(application.messages().back(), "Error occurs while customizing the ColorRamp");
    EXPECT_EQ(application.prompts().titles.back(), "Error Messages from User Procedures");
}

TEST_F(GisFunctions, TablesOpenAndJoinTheMap) {
    auto& platform = application.platform();
    platform.features().createTable(folder.file("t.dbf"), {{"A", FieldType::number, 8, 2}},
                                    {{1.5}});
    const auto table = OpenTable(platform, application.prompts(), folder.path(), "t");
    ASSERT_TRUE(table);
    AddTable(application.prompts(), application.document(), table);
    EXPECT_EQ(application.document().tables.size(), 1U);
    EXPECT_EQ(application.document().refreshed, 1);
    AddTable(application.prompts(), application.document(), nullptr);
    EXPECT_EQ(application.document().tables.size(), 1U);
    EXPECT_TRUE(application.messages().empty());
    EXPECT_FALSE(OpenTable(platform, application.prompts(), folder.path(), "none"));
    EXPECT_EQ(application.messages().back(), "Error in opening table");
    application.document().tablesFail = true;
    AddTable(application.prompts(), application.document(), table);
    EXPECT_EQ(application.messages().back(), "Error in Adding table");
}

}  // namespace
}  // namespace velmora
