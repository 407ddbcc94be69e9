// SPDX-License-Identifier: MIT
// Zone tables as files: what dBASE makes of keys and numbers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "gis/memory_table.h"
#include "gis/zonal_tables.h"
#include "tests/support/crop_fixture.h"

namespace velmora {
namespace {

using test::Shape;
using testing::HasSubstr;

struct ZoneTableFiles : testing::Test {
    test::CropFixture f;
    IPlatform& platform = f.application.platform();
    GridGeometry cells{150, 90, 400000, 4500000, 100, f.geometry().crs};
    ZonalTableSettings settings{f.folder.file("out"), f.settings.Zones, "ZONE", 2003};

    void create(const std::string& name) {
        CreateStatTable(platform, f.application.prompts(), settings.outputWorkspace, name);
    }
    void add(const Grid& grid, const std::string& name, int month) {
        MakeZonalStat(platform, f.application.prompts(), settings,
                      std::make_shared<MemoryRaster>(grid), name, month);
    }
    // A square of so many metres that begins at a corner of a cell.
    static Shape square(const std::string& key, double x, double y, double side) {
        return {key, {{x, y - side}, {x, y}, {x + side, y}, {x + side, y - side}}};
    }
};

TEST_F(ZoneTableFiles, KeysInAnyScriptReachTheTable) {
    const std::vector<std::string> keys = {"Győr-Moson", "Łódź", "Αθήνα", "Écija", "UINTAH"};
    std::vector<Shape> zones;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        zones.push_back(square(keys[i], 400000 + 2000 * static_cast<double>(i), 4500000, 1000));
    }
    f.makeZones(zones);
    create("StatCET");
    const std::string cpg = f.folder.file("out/StatCET.cpg");
    EXPECT_FALSE(platform.files().fileExists(cpg));
    for (const int month : {6, 7}) add(Grid(cells, 1), "StatCET", month);
    const auto rows = f.tableRows("StatCET");
    ASSERT_EQ(rows.size(), 10U) << f.allMessages();
    for (std::size_t r = 0; r < rows.size(); ++r) {
        EXPECT_EQ(std::get<std::string>(rows[r][0]), keys[r % 5]);
    }
    EXPECT_EQ(test::contentOf(cpg), "UTF-8");
    // A table of other names is as it always was.
    f.makeZones({square("Écija", 400000, 4500000, 1000)});
    create("StatCET");
    EXPECT_FALSE(platform.files().fileExists(cpg));
    add(Grid(cells, 1), "StatCET", 6);
    EXPECT_FALSE(platform.files().fileExists(cpg));
    EXPECT_THAT(test::contentOf(f.folder.file("out/StatCET.dbf")), HasSubstr("\xC9"
                                                                             "cija"));
}

TEST_F(ZoneTableFiles, FailuresOfTheTableAreShown) {
    CreateStatTable(platform, f.application.prompts(), f.folder.file("none"), "StatCET");
    ASSERT_EQ(f.application.messages().size(), 1U);
    EXPECT_THAT(f.application.messages()[0], HasSubstr("Cannot write"));
    add(Grid(cells, 1), "StatXYZ", 6);  // a table that was never made
    EXPECT_EQ(f.application.messages()[1], "Error in opening table");
    EXPECT_EQ(f.application.messages()[2], "Error in sub <GotoStatTable>: the table is not open");
    EXPECT_THROW(
        {
            settings.zones = f.folder.file("gone.shp");
            add(Grid(cells, 1), "StatXYZ", 6);
        },
        PlatformError);
}

TEST_F(ZoneTableFiles, RowsBeforeTheOneThatFailsStay) {
    create("StatCET");
    MemoryTable result("zonal", {{"ZONE", FieldType::text, 9, 0},
                                 {"Area", FieldType::number, 0, 0},
                                 {"Mean", FieldType::number, 0, 0}});
    result.append({std::string("one"), 4047.0, 1.0});
    result.append({std::string("two"), 4047.0, 1e300});  // no depth of 20 characters
    result.append({std::string("three"), 4047.0, 1.0});
    const auto zones = platform.features().openFeatureClass(settings.zones);
    GotoStatTable(platform, f.application.prompts(), 6, 2003, result,
                  platform.features().openTable(f.folder.file("out/StatCET")), "ZONE", "CET_D_Ft",
                  *zones);
    ASSERT_EQ(f.tableRows("StatCET").size(), 1U);
    EXPECT_EQ(std::get<std::string>(f.tableRows("StatCET")[0][0]), "one");
    ASSERT_EQ(f.application.messages().size(), 1U);
    EXPECT_THAT(f.application.messages()[0],
                testing::AllOf(testing::StartsWith("Error in sub <GotoStatTable>: zone \"two\": "),
                               HasSubstr("CET_D_Ft"), HasSubstr("does not fit")));
}

}  // namespace
}  // namespace velmora
