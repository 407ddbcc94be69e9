// SPDX-License-Identifier: MIT
#include "platform/grid/raster_formats.h"
#include "platform/files/gdal_library.h"

#include <gdal_priv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <sstream>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "platform/grid/gdal_raster.h"
#include "platform/grid/geotiff_export.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

namespace fs = std::filesystem;

auto says(const std::string& text) {
    return testing::ThrowsMessage<PlatformError>(testing::HasSubstr(text));
}

struct RasterFormats : testing::Test {
    test::TempFolder folder;
    Grid grid{{30, 20, 500, 900, 10, ""}, 2.5F};

    RasterFormats() {
        initialiseGdal();
        for (std::size_t i = 0; i < grid.values.size(); ++i) {
            grid.values[i] = static_cast<float>(i) + 0.5F;
        }
        exportGeoTiff(MemoryRaster(grid), folder.file("a.tif"));
    }
    // The same cells in another format.
    std::string as(const char* driver, const std::string& name) {
        GDALDataset* source = GDALDataset::Open(folder.file("a.tif").c_str());
        auto* made = GetGDALDriverManager()->GetDriverByName(driver);
        EXPECT_NE(made, nullptr) << driver;
        const std::string path = folder.file(name);
        GDALDataset* copy =
            made ? made->CreateCopy(path.c_str(), source, 0, nullptr, nullptr, nullptr) : nullptr;
        EXPECT_NE(copy, nullptr) << driver;
        GDALClose(copy);
        GDALClose(source);
        return path;
    }
};

TEST_F(RasterFormats, EachThatServesIsReadAndHasItsEnding) {
    for (const auto& [driver, name] : {std::pair{"GTiff", "b.tiff"},
                                       {"AAIGrid", "b.asc"},
                                       {"HFA", "b.img"},
                                       {"EHdr", "b.bil"},
                                       {"EHdr", "c.flt"},
                                       {"ENVI", "b.dat"},
                                       {"SAGA", "b.sdat"},
                                       {"GSBG", "b.grd"},
                                       {"RST", "b.rst"},
                                       {"GS7BG", "d.grd"},
                                       {"RRASTER", "e.grd"}}) {
        SCOPED_TRACE(driver);
        const std::string path = as(driver, name);
        EXPECT_TRUE(hasRasterEnding(path));
        EXPECT_EQ(wholeGrid(*openGdalRaster(path)).values, grid.values);
    }
}

TEST_F(RasterFormats, EndingsInCapitalsCount) {
    EXPECT_TRUE(hasRasterEnding("/a.b/DEM.TIF"));
    for (const char* other :
         {"a.png", "a.vrt", "a.tfw", "a.tif.aux.xml", "tif", "/a.tif/b", "a."}) {
        EXPECT_FALSE(hasRasterEnding(other)) << other;
    }
}

TEST_F(RasterFormats, ARasterIsAGridFolderOrAFileWithAnEnding) {
    fs::create_directories(folder.file("grid"));
    EXPECT_FALSE(isRasterDataset(folder.file("grid")));
    test::write(folder.file("grid/hdr.adf"), "header");
    EXPECT_TRUE(isGridFolder(folder.file("grid")));
    EXPECT_TRUE(isRasterDataset(folder.file("grid")));
    EXPECT_TRUE(isRasterDataset(folder.file("a.tif")));
    EXPECT_FALSE(isGridFolder(folder.file("a.tif")));
    EXPECT_FALSE(isRasterDataset(folder.file("none.tif")));
    fs::create_directories(folder.file("folder.tif"));
    EXPECT_FALSE(isRasterDataset(folder.file("folder.tif")));
    test::write(folder.file("b.txt"), "text");
    EXPECT_FALSE(isRasterDataset(folder.file("b.txt")));
}

// The table of the document on file formats names the same endings.
TEST_F(RasterFormats, TheDocumentNamesEveryEnding) {
    const std::string document =
        test::contentOf(std::string(VELMORA_TEST_DATA) + "/../../docs/file-formats.md");
    std::set<std::string> named;
    std::istringstream lines(document);
    const std::regex ending("`\\.([a-z0-9]+)`");
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with("| `.")) continue;
        const std::string cell = line.substr(0, line.find('|', 1));
        for (std::sregex_iterator it(cell.begin(), cell.end(), ending), end; it != end; ++it) {
            named.insert((*it)[1]);
        }
    }
    EXPECT_EQ(named, std::set<std::string>(rasterEndings().begin(), rasterEndings().end()));
}

// A plain file of cells that is cut reads as zeros elsewhere.
TEST_F(RasterFormats, ACutFileIsRefused) {
    for (const auto& [driver, name] : {std::pair{"EHdr", "b.bil"},
                                       {"ENVI", "b.dat"},
                                       {"SAGA", "b.sdat"},
                                       {"RST", "b.rst"},
                                       {"RRASTER", "b.grd"}}) {
        SCOPED_TRACE(driver);
        const std::string path = as(driver, name);
        const std::string cells = std::string(driver) == "RRASTER" ? folder.file("b.gri") : path;
        fs::resize_file(cells, fs::file_size(cells) - 100);
        EXPECT_THAT([&] { wholeGrid(*openGdalRaster(path)); }, says(path));
    }
}

TEST_F(RasterFormats, ADamagedFileIsAnErrorThatNamesIt) {
    for (const auto& [driver, name] :
         {std::pair{"GTiff", "b.tif"}, {"AAIGrid", "b.asc"}, {"HFA", "b.img"}, {"GSBG", "b.grd"}}) {
        const std::string path = as(driver, name);
        const auto size = fs::file_size(path);
        for (std::size_t share = 1; share < 19; ++share) {
            SCOPED_TRACE(path + " " + std::to_string(share));
            fs::copy_file(path, path + ".whole", fs::copy_options::overwrite_existing);
            fs::resize_file(path, size * share / 20);
            EXPECT_THAT([&] { wholeGrid(*openGdalRaster(path)); }, says(path));
            fs::rename(path + ".whole", path);
        }
    }
}

TEST_F(RasterFormats, WhatFetchesItsCellsFromElsewhereIsRefused) {
    const std::string vrt =
        "<VRTDataset rasterXSize=\"30\" rasterYSize=\"20\"><GeoTransform>500,10,0,900,0,-10"
        "</GeoTransform><VRTRasterBand dataType=\"Float32\" band=\"1\"><SimpleSource>"
        "<SourceFilename>" +
        folder.file("a.tif") +
        "</SourceFilename><SourceBand>1</SourceBand></SimpleSource></VRTRasterBand></VRTDataset>";
    for (const char* name : {"b.vrt", "b.tif"}) {
        test::write(folder.file(name), vrt);
        EXPECT_THAT([&] { openGdalRaster(folder.file(name)); }, says("Cannot open the raster"));
    }
    for (const char* path :
         {"/vsicurl/http://127.0.0.1:9/a.tif", "http://127.0.0.1:9/a.tif", "/vsizip/a.zip/a.tif"}) {
        EXPECT_THAT([&] { openGdalRaster(path); }, says("is no file or folder of this machine"));
    }
}

}  // namespace
}  // namespace velmora::platform
