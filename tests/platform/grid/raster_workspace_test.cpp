// SPDX-License-Identifier: MIT
#include "platform/grid/raster_workspace.h"

#include <gdal_priv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "platform/grid/gdal_raster.h"
#include "platform/grid/statistics_files.h"
#include "platform/platform.h"
#include "tests/support/small_files.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

namespace fs = std::filesystem;

RasterPtr flat(float value) {
    return std::make_shared<MemoryRaster>(Grid({40, 30, 0, 30, 1, ""}, value));
}

// Fails when its second tile row is read.
class FailingRaster : public IRaster {
  public:
    const GridGeometry& geometry() const override { return geometry_; }
    void read(const CellBlock& block, std::span<float>) const override {
        if (block.row > 0) throw PlatformError("no more");
    }

  private:
    GridGeometry geometry_{40, 30, 0, 30, 1, ""};
};

struct RasterWorkspace : testing::Test {
    test::TempFolder folder;
    RasterWorkspaceFactory factory;
    std::unique_ptr<IRasterWorkspace> workspace = factory.openFromFolder(folder.path());

    void save(const std::string& name, RasterPtr raster) {
        workspace->save(std::array{RasterToSave{name, std::move(raster), "GRID"}});
    }
    float first(const std::string& name) {
        return wholeGrid(*workspace->openRasterDataset(name)->createDefaultRaster()).values[0];
    }
    std::size_t entries() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()));
    }
};

TEST_F(RasterWorkspace, WhatDescribedTheOldValuesGoesWithThem) {
    save("TM_Jan", flat(1));
    test::write(folder.file("TM_Jan.aux.xml"), "<PAMDataset/>");
    save("TM_Jan", flat(2));
    EXPECT_FALSE(fs::exists(folder.file("TM_Jan.aux.xml")));
}

TEST_F(RasterWorkspace, StatisticsAreKeptBesideAGridUnlessForbidden) {
    save("TM_Jan", flat(1));
    save("TM_Feb", flat(1));
    const auto computeStatistics = [&](const char* name) {
        GDALDataset* grid = GDALDataset::Open(folder.file(name).c_str());
        ASSERT_NE(grid, nullptr);
        double unused = 0;
        grid->GetRasterBand(1)->ComputeStatistics(FALSE, &unused, &unused, &unused, &unused,
                                                  nullptr, nullptr);
        GDALClose(grid);
    };
    computeStatistics("TM_Jan");
    EXPECT_TRUE(fs::exists(folder.file("TM_Jan.aux.xml")));
    {
        const WithoutStatisticsFiles none;
        computeStatistics("TM_Feb");
    }
    EXPECT_FALSE(fs::exists(folder.file("TM_Feb.aux.xml")));
}

// A guest in another program must not silence that program's own errors.
TEST_F(RasterWorkspace, TheHostsErrorHandlerStays) {
    const CPLErrorHandler hosts = [](CPLErr, CPLErrorNum, const char*) {};
    const CPLErrorHandler before = CPLSetErrorHandler(hosts);
    const Platform platform;
    EXPECT_EQ(CPLSetErrorHandler(before), hosts);
}

TEST_F(RasterWorkspace, SavesAndReplaces) {
    save("TM_Jan", flat(1));
    save("TM_Jan", flat(2));
    EXPECT_EQ(first("TM_Jan"), 2);
    EXPECT_EQ(entries(), 1U);
    EXPECT_TRUE(workspace->exists("TM_Jan"));
    EXPECT_FALSE(workspace->exists("TM_Feb"));
}

TEST_F(RasterWorkspace, AResultMayReplaceItsOwnInput) {
    save("A", flat(3));
    save("A", workspace->openRasterDataset("A")->createDefaultRaster());
    EXPECT_EQ(first("A"), 3);
}

TEST_F(RasterWorkspace, AFailureLeavesEverythingAsItWas) {
    save("A", flat(1));
    const std::array both = {RasterToSave{"A", flat(2), "GRID"},
                             RasterToSave{"B", std::make_shared<FailingRaster>(), "GRID"}};
    EXPECT_THROW(workspace->save(both), PlatformError);
    EXPECT_EQ(first("A"), 1);
    EXPECT_EQ(entries(), 1U);
}

TEST_F(RasterWorkspace, AFileOfTheNameIsFoundByItsStem) {
    exportGeoTiff(*flat(9), folder.file("faef_500.tif"));
    EXPECT_EQ(first("faef_500"), 9);
    test::write(folder.file("faef_500.prj"), "x");
    EXPECT_EQ(first("faef_500"), 9);
    save("faef_500", flat(4));
    EXPECT_EQ(first("faef_500"), 4);
    EXPECT_EQ(first("faef_500.tif"), 9);  // the user's, which no grid takes away
    EXPECT_THAT(workspace->openRasterDataset("faef_500")->passedOver(),
                testing::ElementsAre(folder.file("faef_500.tif")));
}

TEST_F(RasterWorkspace, OtherFilesOfTheNameStopNothing) {
    const std::array others = {"png", "pgw", "gif", "jgw", "sld", "xlsx", "tif"};
    for (const char* other : others) test::write(folder.file("PPT_Mar.") + other, "mine");
    EXPECT_THROW(workspace->openRasterDataset("PPT_Mar"), PlatformError);
    save("PPT_Mar", flat(7));
    EXPECT_EQ(first("PPT_Mar"), 7);
    for (const char* other : others) {
        EXPECT_EQ(test::contentOf(folder.file("PPT_Mar.") + other), "mine") << other;
    }
    EXPECT_EQ(entries(), others.size() + 1);
    exportGeoTiff(*flat(9), folder.file("Kc_Jan.tiff"));
    test::write(folder.file("Kc_Jan.tif"), "no raster");  // the first of the two by name
    EXPECT_EQ(first("Kc_Jan"), 9);
}

// A name that cannot be had: the old rasters stay, and nothing unfinished lies about.
TEST_F(RasterWorkspace, AFileThatIsNoRasterIsNotReplaced) {
    test::write(folder.file("TM_Jan"), "mine");
    EXPECT_THAT([&] { save("TM_Jan", flat(1)); },
                testing::ThrowsMessage<PlatformError>(testing::HasSubstr("is no raster")));
    EXPECT_EQ(test::contentOf(folder.file("TM_Jan")), "mine");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(RasterWorkspace, AFullDiskLeavesTheOldGridAndNothingElse) {
    save("A", flat(1));
    exportGeoTiff(*flat(2), folder.file("A.tif"));
    exportGeoTiff(*flat(2), folder.file("B.tif"));
    for (const rlim_t bytes : {0U, 10U, 100U, 400U, 10000U}) {
        const test::SmallFiles full(bytes);
        EXPECT_THROW(save("A", flat(3)), PlatformError) << bytes;
        EXPECT_THROW(save("B", flat(3)), PlatformError) << bytes;
    }
    for (const rlim_t bytes : {0U, 10U, 100U, 300U}) {
        const test::SmallFiles full(bytes);
        EXPECT_THROW(exportGeoTiff(*flat(3), folder.file("A.tif")), PlatformError) << bytes;
    }
    EXPECT_EQ(first("A"), 1);
    EXPECT_EQ(first("A.tif"), 2);
    EXPECT_EQ(first("B"), 2);
    EXPECT_EQ(entries(), 3U);
}

// The last bytes of a GeoTIFF are written when it is closed.
TEST_F(RasterWorkspace, AnExportThatAnySizeOfDiskCutsIsNone) {
    exportGeoTiff(*flat(2), folder.file("whole.tif"));
    const auto size = fs::file_size(folder.file("whole.tif"));
    for (rlim_t bytes = 0; bytes < size; bytes += 7) {
        const test::SmallFiles full(bytes);
        EXPECT_THROW(exportGeoTiff(*flat(2), folder.file("cut.tif")), PlatformError) << bytes;
    }
    EXPECT_EQ(entries(), 1U);
}

TEST_F(RasterWorkspace, AFolderThatIsNoGridIsNotReplaced) {
    fs::create_directory(folder.file("TM_Jan"));
    test::write(folder.file("TM_Jan/notes.txt"), "mine");
    EXPECT_THAT([&] { save("TM_Jan", flat(1)); },
                testing::ThrowsMessage<PlatformError>(testing::HasSubstr("is no grid")));
    EXPECT_EQ(test::contentOf(folder.file("TM_Jan/notes.txt")), "mine");
}

TEST_F(RasterWorkspace, NamesAndFormatsAreChecked) {
    EXPECT_THROW(save("../A", flat(1)), PlatformError);
    EXPECT_THROW(save("", flat(1)), PlatformError);
    EXPECT_THROW(workspace->save(std::array{RasterToSave{"A", flat(1), "TIFF"}}), PlatformError);
    EXPECT_NO_THROW(workspace->save(std::array{RasterToSave{"A", flat(1), "Grid"}}));
    EXPECT_THROW(factory.openFromFolder(folder.file("none")), PlatformError);
    EXPECT_THROW(factory.openRasterDataset(folder.file("none")), PlatformError);
}

TEST_F(RasterWorkspace, OtherRasters) {
    test::write(folder.file("a.asc"),
                "ncols 2\nnrows 2\nxllcorner 0\nyllcorner 0\ncellsize 10\nNODATA_value -1\n"
                "1.5 -1\n3 4\n");
    const Grid grid = wholeGrid(*workspace->openRasterDataset("a")->createDefaultRaster());
    EXPECT_THAT(grid.values, testing::ElementsAre(1.5, kNoData, 3, 4));
    test::write(folder.file("b.asc"),
                "ncols 1\nnrows 1\nxllcorner 0\nyllcorner 0\ndx 10\ndy 20\n1\n");
    EXPECT_THAT([&] { workspace->openRasterDataset("b"); },
                testing::ThrowsMessage<PlatformError>(testing::HasSubstr("cells of 10 x 20")));
    test::write(folder.file("c.tif"), "no raster at all");
    EXPECT_THROW(workspace->openRasterDataset("c"), PlatformError);
}

TEST_F(RasterWorkspace, ExportsCloudOptimizedGeoTiff) {
    Grid grid({40, 30, 100, 200, 5, ""}, 2.5F);
    grid.at(3, 4) = kNoData;
    exportGeoTiff(MemoryRaster(grid), folder.file("out.tif"));
    const RasterPtr back = openGdalRaster(folder.file("out.tif"));
    EXPECT_TRUE(back->geometry().sameCells(grid.geometry));
    EXPECT_EQ(wholeGrid(*back).values, grid.values);
    EXPECT_THROW(exportGeoTiff(MemoryRaster(grid), folder.file("none/out.tif")), PlatformError);
}

}  // namespace
}  // namespace velmora::platform
