// SPDX-License-Identifier: MIT
#include "irrigation/efficiency_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "gis/errors.h"
#include "irrigation/frm_efficiency.h"
#include "irrigation/starter_database.h"
#include "tests/support/irrigation_fixture.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct EfficiencyMap : testing::Test {
    EfficiencyMap() {
        f.makeCropLand(f.fields());
        f.storeSettings();
        IrrigationDefaults defaults;
        defaults.methods = {{"SPR", 0.8, ""}, {"FLD", 0.5, ""}};
        for (const test::Shape& zone : f.zones()) {
            defaults.perZoneAndCrop.push_back({zone.key, "Alfalfa", {0.5, 0.5}});
            defaults.perZoneAndCrop.push_back({zone.key, "Water", {0, 0}});
        }
        defaults.perZoneAndCrop.push_back({"West", "O'Brien Corn", {1, 0}});
        createIrrigationDatabase(f.application.platform(), f.folder.file("IrDB.mdb"), defaults);
        form.load();
        form.cmdApplyIRDB.click();
        form.txtCvef.enter("0.9");
        for (int zone = 0; zone < 3; ++zone) form.cmbZone.select(zone);
        f.application.prompts().messages.clear();
    }
    // The efficiency that zone and crop have by hand.
    static double expected(const std::string& zone, const std::string& crop) {
        if (crop == "Alfalfa") return 0.9 / (0.5 / 0.8 + 0.5 / 0.5);
        return crop == "O'Brien Corn" && zone == "West" ? 0.9 * 0.8 : 0;
    }
    // Of the fields and zones that hold a point the last pair with an efficiency.
    static float efficiencyAt(Point p) {
        float value = kNoData;
        for (const test::Shape& field : test::CropFixture::fields()) {
            if (!test::contains(field, p)) continue;
            for (const test::Shape& zone : test::CropFixture::zones()) {
                const double efficiency = expected(zone.key, field.key);
                if (test::contains(zone, p) && efficiency != 0) {
                    value = static_cast<float>(efficiency);
                }
            }
        }
        return value;
    }
    test::IrrigationFixture f;
    frmEfficiency form{f.application};
};

TEST_F(EfficiencyMap, EveryCellHasTheEfficiencyOfItsZoneAndCrop) {
    form.cmdEFMap.click();
    ASSERT_FALSE(form.failed());
    EXPECT_THAT(f.application.messages(),
                ElementsAre("Ready to make EF map", "EF map (IREF) generated successfully in < " +
                                                        f.settings.OutputWorkspace + " > "));
    EXPECT_EQ(form.PBar1.fraction(), 1);
    const auto pieces =
        f.application.platform().features().openFeatureClass(f.folder.file("out/Lu_Intersected"));
    EXPECT_GT(pieces->recordCount(), 20U);
    for (std::size_t r = 0; r < pieces->recordCount(); ++r) {
        EXPECT_EQ(
            std::get<double>(pieces->value(r, "IREF")),
            expected(keyText(pieces->value(r, "ZONE")), keyText(pieces->value(r, "Descriptio"))));
    }
    const Grid grid = f.output("IREF");
    EXPECT_EQ(grid.geometry.cellSize, 400);
    EXPECT_EQ(grid.geometry.xMin, pieces->extent().xMin);
    EXPECT_EQ(grid.geometry.yMax, pieces->extent().yMax);
    int cells = 0;
    for (int r = 0; r < grid.geometry.rows; ++r) {
        for (int c = 0; c < grid.geometry.columns; ++c) {
            const float value =
                efficiencyAt({grid.geometry.columnCentre(c), grid.geometry.rowCentre(r)});
            EXPECT_EQ(grid.at(c, r), value) << c << ' ' << r;
            cells += value != kNoData ? 1 : 0;
        }
    }
    EXPECT_GT(cells, 50);
}

TEST_F(EfficiencyMap, TheAttributesComeThroughOneTransaction) {
    test::RecordingConnections connections(f.application.platform().connections());
    f.world.platform.otherConnections = &connections;
    form.cmdEFMap.click();
    f.world.platform.otherConnections = nullptr;
    EXPECT_THAT(
        connections.opened,
        ElementsAre("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + f.folder.file("IrDB.mdb"),
                    "Provider=ESRI.GeoDB.Oledb.1;Data Source=" + f.settings.OutputWorkspace +
                        ";Extended Properties=workspacetype=esriCore.ShapefileWorkspaceFactory.1;"
                        "Geometry=OBJECT"));
    EXPECT_THAT(connections.statements,
                testing::Contains("Select * from IREF WHERE [ZONEUNIT] ='O''Dell''s' AND "
                                  "[CropType]='O''Brien Corn'"));
    EXPECT_THAT(connections.statements, testing::Contains("Select * from Lu_Intersected"));
}

TEST_F(EfficiencyMap, AnOldMapIsReplaced) {
    f.save("IREF", f.filled(7));
    form.cmdEFMap.click();
    form.cmdEFMap.click();
    ASSERT_FALSE(form.failed());
    EXPECT_EQ(f.output("IREF").geometry.cellSize, 400);
}

TEST_F(EfficiencyMap, LayersWithoutAttributesAreTold) {
    std::filesystem::remove(f.folder.file("land.dbf"));
    form.cmdEFMap.click();
    EXPECT_TRUE(form.failed());
    EXPECT_THAT(f.application.messages(), ElementsAre("Table QI failed"));
}

TEST_F(EfficiencyMap, FailuresAreToldAndLeaveNoMap) {
    const auto messageOf = [&] {
        f.storeSettings();
        form.load();
        form.cmdEFMap.click();
        EXPECT_TRUE(form.failed());
        EXPECT_FALSE(f.hasOutput("IREF"));
        EXPECT_FALSE(form.busy());
        return f.application.messages().back();
    };
    f.settings.ZoneField = "NONE";
    EXPECT_THAT(messageOf(), HasSubstr("zones.shp has no field \"NONE\""));
    f.settings.ZoneField = "ZONE";
    f.makeCropLand({{"Alfalfa", {{0, 0}, {0, 10}, {10, 10}, {10, 0}}}});
    EXPECT_THAT(messageOf(), HasSubstr("have no land in common"));
    f.settings.LandCover.clear();
    EXPECT_THAT(messageOf(), HasSubstr("land cover shapefile is not set"));
    f.settings.LandCover = f.folder.file("degrees.shp");
    f.settings.ExtentProvider.clear();
    f.application.platform().features().createFeatureClass(
        f.settings.LandCover, true,
        f.application.platform().spatialReferences().createGeographic(4269),
        {{"Descriptio", FieldType::text, 30, 0}},
        {rectangle({-112, 40, -111, 41}, {std::string("Alfalfa")})});
    EXPECT_THAT(messageOf(), HasSubstr("degrees is in degrees"));
}

TEST_F(EfficiencyMap, InvalidPolygonsAreTold) {
    auto shapes = f.fields();
    for (std::size_t i = 0; i < 7; ++i) std::swap(shapes[i].ring[1], shapes[i].ring[2]);
    f.makeCropLand(shapes);
    form.cmdEFMap.click();
    ASSERT_FALSE(form.failed());
    EXPECT_THAT(f.application.messages().front(),
                HasSubstr("Feature 1 of " + f.settings.LandCover));
    EXPECT_THAT(f.application.messages().front(), HasSubstr("; and 2 more"));
}

}  // namespace
}  // namespace velmora
