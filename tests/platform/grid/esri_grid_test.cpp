// SPDX-License-Identifier: MIT
#include "platform/grid/esri_grid.h"
#include "platform/files/gdal_library.h"

#include <gdal_priv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "platform/features/spatial_reference.h"
#include "platform/grid/big_endian.h"
#include "platform/grid/gdal_raster.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

Grid sample(int columns, int rows) {
    SpatialReferenceFactory systems;
    Grid grid({columns, rows, 1234.5, 9876.5, 12.5, systems.createProjected(26912)});
    for (std::size_t i = 0; i < grid.values.size(); ++i) {
        grid.values[i] = i % 97 == 5 ? kNoData : static_cast<float>(i) * 0.37F - 100;
    }
    return grid;
}

void writeGrid(const Grid& grid, const std::string& folder) {
    std::filesystem::remove_all(folder);
    EsriGridWriter writer(folder, grid.geometry);
    const MemoryRaster raster(grid);
    const GridTiles tiles(grid.geometry);
    for (std::size_t t = tiles.count(); t-- > 0;) {  // any order will do
        const CellBlock block = tiles.block(t, grid.geometry);
        std::vector<float> cells(block.cells());
        raster.read(block, cells);
        writer.writeTile(t, cells);
    }
    writer.finish();
}

struct EsriGrid : testing::Test {
    test::TempFolder folder;
    EsriGrid() { initialiseGdal(); }
};

TEST_F(EsriGrid, GdalReadsItBitForBit) {
    for (const auto& [columns, rows] : {std::pair{1, 1}, {256, 16}, {257, 17}, {600, 50}}) {
        const Grid grid = sample(columns, rows);
        const std::string path = folder.file("g" + std::to_string(columns));
        writeGrid(grid, path);
        auto* dataset = GDALDataset::Open(path.c_str(), GDAL_OF_RASTER);
        ASSERT_NE(dataset, nullptr);
        EXPECT_STREQ(dataset->GetDriverName(), "AIG");
        std::vector<float> read(grid.values.size());
        ASSERT_EQ(dataset->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, columns, rows, read.data(),
                                                      columns, rows, GDT_Float32, 0, 0, nullptr),
                  CE_None);
        EXPECT_EQ(read, grid.values);
        EXPECT_EQ(static_cast<float>(dataset->GetRasterBand(1)->GetNoDataValue()), kNoData);
        GDALClose(dataset);
        const RasterPtr viaGdal = openGdalRaster(path);
        EXPECT_TRUE(viaGdal->geometry().sameCells(grid.geometry));
        EXPECT_TRUE(sameCoordinateSystem(viaGdal->geometry().crs, grid.geometry.crs));
    }
}

TEST_F(EsriGrid, ItsOwnReaderGivesTheSame) {
    const Grid grid = sample(600, 50);
    writeGrid(grid, folder.file("g"));
    const RasterPtr raster = openEsriGrid(folder.file("g"));
    ASSERT_TRUE(raster);
    EXPECT_TRUE(raster->geometry().sameCells(grid.geometry));
    EXPECT_TRUE(sameCoordinateSystem(raster->geometry().crs, grid.geometry.crs));
    EXPECT_EQ(wholeGrid(*raster).values, grid.values);
    std::vector<float> part(3 * 20);
    raster->read({254, 10, 3, 20}, part);
    EXPECT_EQ(part[0], grid.at(254, 10));
    EXPECT_EQ(part[2], grid.at(256, 10));
    EXPECT_EQ(part[59], grid.at(256, 29));
}

TEST_F(EsriGrid, StatisticsStandInTheirFile) {
    Grid grid({2, 2, 0, 2, 1, ""});
    grid.values = {1, kNoData, 4, 7};  // mean 4, variance (9 + 0 + 9) / 3
    writeGrid(grid, folder.file("g"));
    const std::string bytes = test::contentOf(folder.file("g") + "/sta.adf");
    ASSERT_EQ(bytes.size(), 32U);
    EXPECT_EQ(doubleAt(bytes.data()), 1);
    EXPECT_EQ(doubleAt(bytes.data() + 8), 7);
    EXPECT_EQ(doubleAt(bytes.data() + 16), 4);
    EXPECT_DOUBLE_EQ(doubleAt(bytes.data() + 24), std::sqrt(6.0));
}

TEST_F(EsriGrid, AGridWithoutDataIsReadable) {
    const Grid grid({300, 20, 0, 20, 1, ""});
    writeGrid(grid, folder.file("empty"));
    EXPECT_EQ(wholeGrid(*openGdalRaster(folder.file("empty"))).values, grid.values);
    EXPECT_EQ(wholeGrid(*openEsriGrid(folder.file("empty"))).values, grid.values);
}

TEST_F(EsriGrid, HeaderAsLaidOut) {
    writeGrid(sample(600, 50), folder.file("g"));
    const std::string header = test::contentOf(folder.file("g") + "/hdr.adf");
    EXPECT_EQ(header.size(), 308U);
    EXPECT_EQ(header.substr(0, 8), std::string("GRID1.2\0", 8));
    EXPECT_EQ(int32At(header.data() + 16), 2U);
    EXPECT_EQ(int32At(header.data() + 20), 1U);
    EXPECT_EQ(doubleAt(header.data() + 256), 12.5);
    EXPECT_EQ(doubleAt(header.data() + 272), 1234.5 - 6.25);
    EXPECT_EQ(doubleAt(header.data() + 280), 9876.5 + 6.25);
    EXPECT_EQ(int32At(header.data() + 288), 3U);
    EXPECT_EQ(int32At(header.data() + 292), 4U);
    EXPECT_EQ(int32At(header.data() + 296), 256U);
    EXPECT_EQ(int32At(header.data() + 300), 1U);
    EXPECT_EQ(int32At(header.data() + 304), 16U);
    const std::string tiles = test::contentOf(folder.file("g") + "/w001001.adf");
    EXPECT_EQ(tiles.substr(0, 8), std::string("\0\0\x27\x0A\xFF\xFF\0\0", 8));
    EXPECT_EQ(int32At(tiles.data() + 24) * 2, tiles.size());
    EXPECT_EQ(test::contentOf(folder.file("g") + "/w001001x.adf").size(), 100U + 12 * 8);
}

TEST_F(EsriGrid, TooLargeForOneFileIsRefused) {
    EXPECT_THAT(
        [&] {
            EsriGridWriter(folder.file("g"), {40000, 30000, 0, 0, 1, ""});
        },
        testing::ThrowsMessage<PlatformError>(testing::HasSubstr("4 GiB")));
}

TEST_F(EsriGrid, DamagedGridsAreErrorsNotCrashes) {
    writeGrid(sample(600, 50), folder.file("g"));
    const std::string tiles = test::contentOf(folder.file("g") + "/w001001.adf");
    const RasterPtr raster = openEsriGrid(folder.file("g"));
    ASSERT_TRUE(raster);
    test::write(folder.file("g") + "/w001001.adf", tiles.substr(0, tiles.size() / 2));
    EXPECT_THROW(wholeGrid(*raster), PlatformError);
    test::write(folder.file("g") + "/w001001.adf", tiles);

    const std::string header = test::contentOf(folder.file("g") + "/hdr.adf");
    for (std::size_t at = 256; at < 308; at += 4) {
        std::string damaged = header;
        damaged.replace(at, 4, "\xFF\xFF\xFF\xFF");
        test::write(folder.file("g") + "/hdr.adf", damaged);
        EXPECT_NO_THROW(openEsriGrid(folder.file("g"))) << at;
    }
    EXPECT_FALSE(openEsriGrid(folder.path()));

    // One tile of 65536 x 65536 cells, which no grid has: nobody makes room for it.
    std::string huge = header;
    huge.replace(288, 20, std::string("\0\0\0\1\0\0\0\1\0\1\0\0\0\0\0\1\0\1\0\0", 20));
    test::write(folder.file("g") + "/hdr.adf", huge);
    std::string index(100, '\0');
    appendInt32(index, 50);
    appendInt32(index, 0);  // 2^33 words do not even fit here
    test::write(folder.file("g") + "/w001001x.adf", index);
    EXPECT_FALSE(openEsriGrid(folder.file("g")));
    huge.replace(304, 4, std::string("\0\0\x10\0", 4));  // 65536 x 4096: 2^29 words
    index.replace(104, 4, std::string("\x20\0\0\0", 4));
    test::write(folder.file("g") + "/hdr.adf", huge);
    test::write(folder.file("g") + "/w001001x.adf", index);
    EXPECT_FALSE(openEsriGrid(folder.file("g")));
}

// Writes bytes into a file of the grid.
void patch(const std::string& path, std::size_t at, const std::string& bytes) {
    std::string content = test::contentOf(path);
    content.replace(at, bytes.size(), bytes);
    test::write(path, content);
}

TEST_F(EsriGrid, AnIndexThatDisagreesWithItsTilesIsRefused) {
    const auto indexed = [&](const std::string& entry) {
        writeGrid(sample(600, 50), folder.file("g"));
        patch(folder.file("g/w001001x.adf"), 100 + 8, entry);  // of the second tile
        return folder.file("g");
    };
    const auto says = [](const std::string& text) {
        return testing::ThrowsMessage<PlatformError>(testing::HasSubstr(text));
    };
    EXPECT_THAT([&] { openEsriGrid(indexed(std::string(4, '\0'))); },
                says("points into the header"));
    EXPECT_THAT([&] { openEsriGrid(indexed(std::string("\x7f\xff\xff\xff", 4))); },
                says("is cut short"));
    const RasterPtr raster = openEsriGrid(indexed(std::string("\0\0\0\x64", 4)));
    ASSERT_TRUE(raster);
    EXPECT_THAT([&] { wholeGrid(*raster); }, says("tile 2 of w001001.adf has a length of"));
}

TEST_F(EsriGrid, ATileFileThatIsCutIsRefusedWhenItIsOpened) {
    writeGrid(sample(600, 50), folder.file("g"));
    const std::string tiles = folder.file("g/w001001.adf");
    std::filesystem::resize_file(tiles, std::filesystem::file_size(tiles) - 1);
    EXPECT_THAT([&] { openEsriGrid(folder.file("g")); },
                testing::ThrowsMessage<PlatformError>(testing::HasSubstr("is cut short")));
}

}  // namespace
}  // namespace velmora::platform
