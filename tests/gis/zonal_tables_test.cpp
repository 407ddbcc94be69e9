// SPDX-License-Identifier: MIT
#include "gis/zonal_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "gis/memory_table.h"
#include "tests/support/fakes.h"
#include "tests/support/worlds.h"

namespace velmora {
namespace {

using testing::ElementsAre;

TEST(ZonalDays, EveryFourthYearIsALeapYear) {
    EXPECT_EQ(zonalDaysOfMonth(1, 2003), 31);
    EXPECT_EQ(zonalDaysOfMonth(4, 2003), 30);
    EXPECT_EQ(zonalDaysOfMonth(2, 2003), 28);
    EXPECT_EQ(zonalDaysOfMonth(2, 2000), 29);
    EXPECT_EQ(zonalDaysOfMonth(2, 1900), 29);  // no rule of the centuries
    EXPECT_EQ(zonalDaysOfMonth(2, 2100), 29);
    EXPECT_EQ(zonalDaysOfMonth(2, 0), 29);
    EXPECT_EQ(zonalDaysOfMonth(0, 2003), 0);
    EXPECT_EQ(zonalDaysOfMonth(13, 2003), 0);
}

// A zone by its key and ring.
struct Zone {
    std::string key;
    std::vector<Point> ring;
};

// A square of so many metres that begins at a corner of a cell.
Zone square(const std::string& key, double x, double y, double side) {
    return {key, {{x, y - side}, {x, y}, {x + side, y}, {x + side, y - side}, {x, y - side}}};
}

struct ZonalTables : testing::Test {
    test::MemoryWorld world;
    test::FakePlatform& platform = world.platform;
    test::FakePrompts prompts;
    GridGeometry cells{150,     90,  400000,
                       4500000, 100, platform.spatialReferences().createProjected(26912)};
    ZonalTableSettings settings{world.folder.path(), world.folder.file("zones.shp"), "ZONE", 2003};

    ZonalTables() {
        makeZones({square("West", 400000, 4500000, 5000),
                   square("Middle Valley Irrigators' District", 405000, 4500000, 4000),
                   square("O'Dell's", 409000, 4500000, 5000)});
    }
    void makeZones(const std::vector<Zone>& zones) {
        std::vector<NewFeature> features;
        for (const Zone& zone : zones) features.push_back({zone.ring, {zone.key}});
        platform.features().createFeatureClass(settings.zones, true, cells.crs,
                                               {{"ZONE", FieldType::text, 60, 0}}, features);
    }
    bool create(const std::string& name) {
        return CreateStatTable(platform, prompts, settings.outputWorkspace, name);
    }
    void add(const Grid& grid, const std::string& name, int month) {
        MakeZonalStat(platform, prompts, settings, std::make_shared<MemoryRaster>(grid), name,
                      month);
    }
    std::vector<std::vector<FieldValue>> rowsOf(const std::string& name) {
        const auto table = platform.features().openTable(world.folder.file(name));
        std::vector<std::vector<FieldValue>> rows;
        for (std::size_t r = 0; r < table->recordCount(); ++r) {
            rows.emplace_back();
            for (const Field& field : table->fields()) {
                rows.back().push_back(table->value(r, field.name));
            }
        }
        return rows;
    }
    static double number(const FieldValue& value) { return std::get<double>(value); }
};

TEST_F(ZonalTables, FieldsInTheirOrderNamesAndWidths) {
    create("StatNIR");
    const auto table = platform.features().openTable(world.folder.file("StatNIR.dbf"));
    const std::vector<std::pair<std::string, int>> expected = {
        {"ZoneUnit", 25}, {"Area_T_ac", 20}, {"Area_C_ac", 50},
        {"Month", 10},    {"NIR_D_ft", 20},  {"NIR_V_acft", 20}};
    ASSERT_EQ(table->fields().size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(table->fields()[i].name, expected[i].first);
        EXPECT_EQ(table->fields()[i].width, expected[i].second);
    }
    EXPECT_EQ(table->fields()[0].type, FieldType::text);
    EXPECT_EQ(table->fields()[1].type, FieldType::number);
    EXPECT_EQ(table->fields()[3].type, FieldType::integer);
    EXPECT_EQ(table->recordCount(), 0U);
}

TEST_F(ZonalTables, DepthAndVolumeByHand) {
    // 20 x 20 cells count; the polygon is a little larger.
    makeZones({square("A", 400000, 4500000, 2004)});
    create("StatCET");
    add(Grid(cells, 5.2F), "StatCET", 7);
    const auto rows = rowsOf("StatCET");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(std::get<std::string>(rows[0][0]), "A");
    EXPECT_NEAR(number(rows[0][1]), 992.344, 5e-4);  // 2004^2 / 4047
    EXPECT_NEAR(number(rows[0][2]), 988.386, 5e-4);  // 4,000,000 / 4047
    EXPECT_EQ(number(rows[0][3]), 7);
    const double mean = static_cast<double>(5.2F);
    EXPECT_NEAR(number(rows[0][4]), 31 * mean / 304.8, 1e-15);
    EXPECT_NEAR(number(rows[0][5]), 31 * mean / 304.8 * (4000000.0 / 4047), 1e-9);
    EXPECT_NEAR(number(rows[0][4]), 0.52887, 1e-5);  // the depth of 5.2 mm a day over 31 days
}

TEST_F(ZonalTables, AreasOfZonesInDegreesAreSquareMetresToo) {
    auto& systems = platform.spatialReferences();
    const std::string geographic = systems.createGeographic(4269);
    Zone zone = square("A", 400000, 4500000, 2004);
    platform.features().createFeatureClass(
        settings.zones, true, geographic, {{"ZONE", FieldType::text, 60, 0}},
        {{systems.project(zone.ring, cells.crs, geographic), {zone.key}}});
    create("StatCET");
    add(Grid(cells, 5.2F), "StatCET", 7);
    ASSERT_EQ(rowsOf("StatCET").size(), 1U);
    EXPECT_NEAR(number(rowsOf("StatCET")[0][1]), 992.344, 0.1);
}

TEST_F(ZonalTables, FebruaryFollowsTheYear) {
    makeZones({square("A", 400000, 4500000, 2000)});
    for (const auto& [year, days] :
         {std::pair{2000, 29}, std::pair{1900, 29}, std::pair{2003, 28}}) {
        settings.year = year;
        create("StatCET");
        add(Grid(cells, 2), "StatCET", 2);
        EXPECT_NEAR(number(rowsOf("StatCET")[0][4]), days * 2 / 304.8, 1e-15);
    }
}

TEST_F(ZonalTables, MonthsAreAppendedAndANewTableBeginsEmpty) {
    create("StatCET");
    for (const int month : {5, 3, 4}) add(Grid(cells, 1), "StatCET", month);
    auto rows = rowsOf("StatCET");
    ASSERT_EQ(rows.size(), 9U);
    EXPECT_EQ(number(rows[0][3]), 5);
    EXPECT_EQ(number(rows[3][3]), 3);
    EXPECT_EQ(std::get<std::string>(rows[3][0]), "West");
    EXPECT_EQ(std::get<std::string>(rows[5][0]), "O'Dell's");
    create("StatCET");
    EXPECT_TRUE(rowsOf("StatCET").empty());
}

TEST_F(ZonalTables, ZonesAfterAnEmptyOneTakeTheirNeighboursPolygonArea) {
    makeZones({square("A", 400000, 4500000, 1000), square("B", 402000, 4500000, 2000),
               square("C", 405000, 4500000, 3000)});
    Grid grid(cells, 1);
    for (int r = 0; r < 10; ++r) {
        for (int c = 0; c < 10; ++c) grid.at(c, r) = kNoData;  // all of A
    }
    create("StatCET");
    add(grid, "StatCET", 6);
    const auto rows = rowsOf("StatCET");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(std::get<std::string>(rows[0][0]), "B");
    EXPECT_NEAR(number(rows[0][1]), 1e6 / 4047, 1e-3);  // the area of A
    EXPECT_NEAR(number(rows[0][2]), 4e6 / 4047, 1e-3);
    EXPECT_EQ(std::get<std::string>(rows[1][0]), "C");
    EXPECT_NEAR(number(rows[1][1]), 4e6 / 4047, 1e-3);  // the area of B
}

TEST_F(ZonalTables, AnAreaBelowOneAcreAndAWholeNumberOfAcres) {
    makeZones({square("small", 400000, 4500000, 50),
               {"whole",
                {{401000, 4498381.2}, {401000, 4500000}, {402000, 4500000}, {402000, 4498381.2}}}});
    GridGeometry fine{2000, 2000, 400000, 4500000, 1, cells.crs};
    create("StatCET");
    add(Grid(fine, 1), "StatCET", 6);
    const auto rows = rowsOf("StatCET");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(number(rows[0][1]), 0.618);  // 2500 / 4047
    EXPECT_EQ(number(rows[0][2]), 0.618);
    EXPECT_EQ(number(rows[1][1]), 400);
}

TEST_F(ZonalTables, KeysWithApostrophesNumbersAndMoreThanTwentyFiveCharacters) {
    create("StatCET");
    add(Grid(cells, 1), "StatCET", 6);
    auto rows = rowsOf("StatCET");
    EXPECT_EQ(std::get<std::string>(rows[1][0]), "Middle Valley Irrigators'");
    EXPECT_EQ(std::get<std::string>(rows[2][0]), "O'Dell's");
    makeZones({square("Canal de la Doña Señora Ibáñez Núñez", 400000, 4500000, 1000)});
    create("StatCET");
    add(Grid(cells, 1), "StatCET", 6);
    EXPECT_EQ(std::get<std::string>(rowsOf("StatCET")[0][0]), "Canal de la Doña Señora I");
    platform.features().createFeatureClass(settings.zones, true, cells.crs,
                                           {{"ID", FieldType::integer, 8, 0}},
                                           {rectangle({400000, 4499000, 401000, 4500000}, {17.0})});
    settings.zoneField = "ID";
    create("StatCET");
    add(Grid(cells, 1), "StatCET", 6);
    EXPECT_EQ(std::get<std::string>(rowsOf("StatCET")[0][0]), "17");
    EXPECT_TRUE(prompts.messages.empty()) << prompts.messages.front();
}

TEST_F(ZonalTables, KeysThatAreCutAreToldOnce) {
    makeZones({square("Ύδρευση και άρδευση Α", 400000, 4500000, 1000),
               square("Ύδρευση και άρδευση Β", 402000, 4500000, 1000),
               square("Kurz", 404000, 4500000, 1000)});
    create("StatCET");
    for (const int month : {6, 7}) add(Grid(cells, 1), "StatCET", month);
    const auto rows = rowsOf("StatCET");
    ASSERT_EQ(rows.size(), 6U);
    EXPECT_EQ(std::get<std::string>(rows[0][0]), "Ύδρευση και ά");  // 24 bytes; the next has two
    const auto& notices = prompts.notices;
    ASSERT_EQ(notices.size(), 2U);
    EXPECT_EQ(notices[0],
              "StatCET: the zone key \"Ύδρευση και άρδευση Α\" has more than 25 bytes in UTF-8, of "
              "which tables keep \"Ύδρευση και ά\", as of Ύδρευση και άρδευση Β: their rows look "
              "the same");
}

TEST_F(ZonalTables, NegativeMeansStayNegative) {
    create("StatNIR");
    add(Grid(cells, -2), "StatNIR", 6);
    EXPECT_LT(number(rowsOf("StatNIR")[0][4]), 0);
    EXPECT_LT(number(rowsOf("StatNIR")[0][5]), 0);
}

TEST_F(ZonalTables, ATableThatCannotBeMadeIsShown) {
    platform.features().creates.failAt(1);
    EXPECT_FALSE(create("StatCET"));
    EXPECT_THAT(prompts.messages,
                ElementsAre("Cannot make the table /basin/StatCET.dbf: the test lets it fail"));
    add(Grid(cells, 1), "StatCET", 6);
    EXPECT_THAT(prompts.messages,
                ElementsAre(testing::_, "Error in opening table",
                            "Error in sub <GotoStatTable>: the table is not open"));
    EXPECT_EQ(prompts.failures(), 3U);
}

TEST_F(ZonalTables, ZonesThatCannotBeOpenedAreTheCallersFailure) {
    create("StatCET");
    settings.zones = world.folder.file("gone.shp");
    EXPECT_THROW(add(Grid(cells, 1), "StatCET", 6), PlatformError);
    settings.zones = "";
    EXPECT_THROW(add(Grid(cells, 1), "StatCET", 6), PlatformError);
    EXPECT_TRUE(rowsOf("StatCET").empty());
}

TEST_F(ZonalTables, ASaveThatFailsOnceLosesNoRow) {
    create("StatCET");
    platform.features().saves.failAt(1);
    add(Grid(cells, 1), "StatCET", 6);
    EXPECT_EQ(rowsOf("StatCET").size(), 3U);
    EXPECT_TRUE(prompts.messages.empty());
}

TEST_F(ZonalTables, RowsBeforeTheOneThatFailsStay) {
    create("StatCET");
    platform.features().saves.failAt(1);  // of all rows at once
    platform.features().saves.failAt(3);  // of the second row
    add(Grid(cells, 1), "StatCET", 6);
    ASSERT_EQ(rowsOf("StatCET").size(), 1U);
    EXPECT_EQ(std::get<std::string>(rowsOf("StatCET")[0][0]), "West");
    EXPECT_THAT(prompts.messages,
                ElementsAre("Error in sub <GotoStatTable>: zone \"Middle Valley Irrigators'\": "
                            "Cannot store the table /basin/StatCET.dbf: the test lets it fail"));
}

}  // namespace
}  // namespace velmora
