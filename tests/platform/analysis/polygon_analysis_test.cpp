// SPDX-License-Identifier: MIT
// Polygons to grids, and grids by zones.
#include "gis/polygon_analysis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "gis/month_names.h"
#include "platform/analysis/conversion.h"
#include "platform/analysis/zonal.h"
#include "platform/threads/parallel_loop.h"
#include "tests/support/crop_fixture.h"

namespace velmora::platform {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

struct PolygonAnalysis : testing::Test {
    test::CropFixture f;
    Platform& platform = f.world.platform;
    GridGeometry cells{150, 90, 400000, 4500000, 100, f.geometry().crs};

    std::unique_ptr<IJoinedLayer> joined() {
        return platform.memoryRelationships().open(
            {"JoinTable", platform.features().openTable(f.settings.KcTable), "CropType",
             platform.features().openFeatureClass(f.settings.LandCover), "Use", "", ""});
    }
    std::unique_ptr<IRasterWorkspace> workspace() {
        return platform.rasters().openFromFolder(f.folder.path());
    }
    Grid made(ConversionOp& op, const IJoinedLayer& layer, const std::string& month) {
        useCells(op.environment(), cells);
        const std::string column = "crops.Kc_" + month;
        return wholeGrid(*op.ToRasterDataset({layer, "[" + column + "] <> 0", column}, "Grid",
                                             *workspace(), "kc")
                              ->createDefaultRaster());
    }
    double coefficient(const test::Shape& field, int month) {
        for (const test::Crop& crop : test::CropFixture::crops()) {
            if (crop.type == field.key) return crop.monthly[static_cast<std::size_t>(month - 1)];
        }
        return 0;
    }
};

TEST_F(PolygonAnalysis, TheRecordsOfCellsAreThoseOfTheWholeGridInAnyRows) {
    const auto fields = platform.features().openFeatureClass(f.settings.LandCover);
    const auto whole = ZonalOp().recordsOfCells(*fields, cells, 0, cells.rows);
    ASSERT_EQ(whole.size(), cells.cells());
    std::size_t filled = 0;
    for (int r = 0; r < cells.rows; ++r) {
        for (int c = 0; c < cells.columns; ++c) {
            const int expected = test::shapeAt(test::CropFixture::fields(),
                                               {cells.columnCentre(c), cells.rowCentre(r)});
            const auto at = static_cast<std::size_t>(r) * static_cast<std::size_t>(cells.columns) +
                            static_cast<std::size_t>(c);
            ASSERT_EQ(whole[at], expected) << c << " " << r;
            filled += expected < 0 ? 0 : 1;
        }
    }
    EXPECT_GT(filled, 300U);
    std::vector<std::int32_t> parts;
    for (int row = 0; row < cells.rows; row += 32) {
        const auto part =
            ZonalOp().recordsOfCells(*fields, cells, row, std::min(32, cells.rows - row));
        parts.insert(parts.end(), part.begin(), part.end());
    }
    EXPECT_EQ(parts, whole);
}

TEST_F(PolygonAnalysis, ACellTakesTheLastPolygonThatContainsItsCentre) {
    const auto layer = joined();
    for (const int month : {3, 6, 7, 12}) {
        ConversionOp op;
        const Grid grid = made(op, *layer, GetMonthName(month));
        std::vector<test::Shape> kept;
        std::vector<double> values;
        for (const test::Shape& field : test::CropFixture::fields()) {
            if (coefficient(field, month) == 0) continue;
            kept.push_back(field);
            values.push_back(coefficient(field, month));
        }
        std::size_t filled = 0;
        for (int r = 0; r < cells.rows; ++r) {
            for (int c = 0; c < cells.columns; ++c) {
                const int at = test::shapeAt(kept, {cells.columnCentre(c), cells.rowCentre(r)});
                const float expected =
                    at < 0 ? kNoData : static_cast<float>(values[static_cast<std::size_t>(at)]);
                ASSERT_EQ(grid.at(c, r), expected) << c << " " << r;
                filled += at < 0 ? 0 : 1;
            }
        }
        if (month == 12) {
            EXPECT_EQ(filled, 0U);
        } else {
            EXPECT_GT(filled, 300U);
        }
    }
}

TEST_F(PolygonAnalysis, MonthsThatKeepTheSamePolygonsShareOnePass) {
    const auto layer = joined();
    ConversionOp op;
    for (const char* month :
         {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"}) {
        made(op, *layer, month);
    }
    // None (Jan, Feb, Nov, Dec), alfalfa alone (Mar, Oct), with barley (Apr), all (May to Jul),
    // without barley (Aug, Sep).
    EXPECT_EQ(op.passes(), 5);
}

TEST_F(PolygonAnalysis, OneThreadAndManyGiveTheSameCells) {
    const auto layer = joined();
    useThreads(1);
    ConversionOp one;
    const Grid single = made(one, *layer, "Jul");
    useThreads(0);
    ConversionOp many;
    EXPECT_EQ(made(many, *layer, "Jul").values, single.values);
}

TEST_F(PolygonAnalysis, AHoleStaysEmpty) {
    // A ring that runs around the outside and then, the other way, around a hole.
    const Envelope outer{400000, 4491000, 409000, 4500000};
    f.makeLandCover({{"Alfalfa",
                      {{outer.xMin, outer.yMin},
                       {outer.xMin, outer.yMax},
                       {outer.xMax, outer.yMax},
                       {outer.xMax, outer.yMin},
                       {outer.xMin, outer.yMin},
                       {402010, 4493010},
                       {407010, 4493010},
                       {407010, 4498010},
                       {402010, 4498010},
                       {402010, 4493010}}}});
    const auto layer = joined();
    ConversionOp op;
    const Grid grid = made(op, *layer, "Jul");
    EXPECT_EQ(grid.at(5, 5), 1.1F);
    EXPECT_EQ(grid.at(45, 45), kNoData);  // in the hole
    EXPECT_EQ(grid.at(140, 45), kNoData);
}

TEST_F(PolygonAnalysis, WhatCannotBeMadeAGridOf) {
    const auto layer = joined();
    ConversionOp op;
    useCells(op.environment(), cells);
    EXPECT_THAT(
        [&] {
            op.ToRasterDataset({*layer, "", "crops.Kc_Foo"}, "Grid", *workspace(), "k");
        },
        ThrowsMessage<PlatformError>(HasSubstr("There is no field crops.Kc_Foo")));
    EXPECT_THAT(
        [&] {
            op.ToRasterDataset({*layer, "", "land.Use"}, "Grid", *workspace(), "k");
        },
        ThrowsMessage<PlatformError>(HasSubstr("holds text")));
    const auto stations = platform.memoryRelationships().open(
        {"JoinTable", platform.features().openTable(f.settings.KcTable), "CropType",
         platform.features().openFeatureClass(f.settings.WeatherStations), "staname", "", ""});
    EXPECT_THAT(
        [&] {
            op.ToRasterDataset({*stations, "", "stations.ELEVATION"}, "Grid", *workspace(), "k");
        },
        ThrowsMessage<PlatformError>(HasSubstr("is no polygon")));
}

struct Zonal : PolygonAnalysis {
    std::shared_ptr<ITable> statistics(const Grid& grid, bool ignoreNoData = true) {
        const auto zones =
            platform.features().openFeatureClass(f.settings.Zones, grid.geometry.crs);
        return ZonalOp().ZonalStatisticsAsTable(zones, "ZONE", std::make_shared<MemoryRaster>(grid),
                                                ignoreNoData);
    }
    double number(const ITable& table, std::size_t record, const std::string& field) {
        return std::get<double>(table.value(record, field));
    }
    Grid slope() {
        Grid grid(cells);
        for (int r = 0; r < cells.rows; ++r) {
            for (int c = 0; c < cells.columns; ++c) {
                grid.at(c, r) = (c + r) % 11 == 0 ? kNoData : static_cast<float>(0.1 * c + r);
            }
        }
        return grid;
    }
};

TEST_F(Zonal, AgreesWithThePlainSums) {
    const Grid grid = slope();
    const auto table = statistics(grid);
    const auto zones = test::CropFixture::zones();
    ASSERT_EQ(table->recordCount(), zones.size());
    for (std::size_t z = 0; z < zones.size(); ++z) {
        double sum = 0;
        double count = 0;
        double low = HUGE_VAL;
        double high = -HUGE_VAL;
        for (int r = 0; r < cells.rows; ++r) {
            for (int c = 0; c < cells.columns; ++c) {
                const float v = grid.at(c, r);
                if (v == kNoData ||
                    !test::contains(zones[z], {cells.columnCentre(c), cells.rowCentre(r)}))
                    continue;
                sum += static_cast<double>(v);
                ++count;
                low = std::min<double>(low, v);
                high = std::max<double>(high, v);
            }
        }
        EXPECT_EQ(std::get<std::string>(table->value(z, "zone")), zones[z].key);
        EXPECT_EQ(number(*table, z, "Count"), count);
        EXPECT_EQ(number(*table, z, "Area"), count * 10000);
        EXPECT_NEAR(number(*table, z, "Mean"), sum / count, 1e-9);
        EXPECT_NEAR(number(*table, z, "Sum"), sum, 1e-6);
        EXPECT_EQ(number(*table, z, "Min"), low);
        EXPECT_EQ(number(*table, z, "Max"), high);
    }
}

TEST_F(Zonal, AZoneWithoutDataHasNoRecord) {
    Grid grid = slope();
    for (int r = 0; r < cells.rows; ++r) {
        for (int c = 0; c < 50; ++c) grid.at(c, r) = kNoData;  // all of the west, and a little more
    }
    const auto table = statistics(grid);
    ASSERT_EQ(table->recordCount(), 2U);
    EXPECT_EQ(std::get<std::string>(table->value(0, "ZONE")), "Middle Valley Irrigators' District");
    EXPECT_EQ(statistics(slope(), false)->recordCount(),
              0U);  // every zone holds cells without data
    EXPECT_EQ(statistics(Grid(cells, 2), false)->recordCount(), 3U);
}

TEST_F(Zonal, PolygonsOfOneKeyAreOneZoneInOrderOfFirstAppearance) {
    auto zones = test::CropFixture::zones();
    std::swap(zones[0], zones[2]);
    zones.push_back(zones[1]);
    zones[3].key = zones[0].key;  // lies over the whole second zone
    f.makeZones(zones);
    const auto table = statistics(Grid(cells, 2));
    ASSERT_EQ(table->recordCount(), 2U);
    EXPECT_EQ(std::get<std::string>(table->value(0, "ZONE")), "O'Dell's");
    EXPECT_EQ(std::get<std::string>(table->value(1, "ZONE")), "West");
}

TEST_F(Zonal, ThreadsDoNotMatterAndZonesMayLieInAnotherSystem) {
    const Grid grid = slope();
    useThreads(1);
    const auto one = statistics(grid);
    useThreads(0);
    const auto many = statistics(grid);
    for (std::size_t z = 0; z < 3; ++z) EXPECT_EQ(number(*one, z, "Sum"), number(*many, z, "Sum"));

    auto& systems = platform.spatialReferences();
    const std::string geographic = systems.createGeographic(4269);
    std::vector<NewFeature> shapes;
    for (test::Shape zone : test::CropFixture::zones()) {
        zone.ring.push_back(zone.ring.front());
        shapes.push_back({systems.project(zone.ring, cells.crs, geographic), {zone.key}});
    }
    platform.features().createFeatureClass(f.settings.Zones, true, geographic,
                                           {{"ZONE", FieldType::text, 60, 0}}, shapes);
    const auto transformed = statistics(grid);
    for (std::size_t z = 0; z < 3; ++z) {
        EXPECT_NEAR(number(*transformed, z, "Count"), number(*one, z, "Count"), 60);
    }
    // Areas are in the system that the layer is opened in.
    const auto layer = platform.features().openFeatureClass(f.settings.Zones, cells.crs);
    EXPECT_NEAR(layer->areas()[0], test::areaOf(test::CropFixture::zones()[0]), 2e3);
    EXPECT_NEAR(layer->extent().xMin, 400000.5, 20);
}

TEST_F(Zonal, AMissingFieldIsNamed) {
    const auto zones = platform.features().openFeatureClass(f.settings.Zones);
    const RasterPtr grid = std::make_shared<MemoryRaster>(Grid(cells, 1));
    EXPECT_THAT([&] { ZonalOp().ZonalStatisticsAsTable(zones, "NAME", grid, true); },
                ThrowsMessage<PlatformError>(HasSubstr("zones.shp has no field \"NAME\"")));
}

}  // namespace
}  // namespace velmora::platform
