// SPDX-License-Identifier: MIT
#include "irrigation/irrigation_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <numeric>

#include "gis/errors.h"
#include "gis/files.h"
#include "irrigation/crop_summary.h"
#include "irrigation/default_names.h"
#include "irrigation/starter_database.h"
#include "tests/support/irrigation_fixture.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(DefaultNames, CropsOfTheLandCoverHaveOthersInTheTables) {
    const std::vector<std::pair<std::string, std::string>> names = {
        {"Beans", "Beans and Peas"},
        {"Berries", "Small Fruits"},
        {"Fruit", "Tree Fruits"},
        {"Grain", "Barley"},
        {"Grass / Turf", "Turfgrass Sod"},
        {"Grass Hay", "Pasture/Hay Crops"},
        {"Pasture", "Pasture/Hay Crops"},
        {"Hayland - subirrigated", "Pasture/Hay Crops"},
        {"Pasture - subirrigated", "Pasture/Hay Crops"},
        {"Sub-irrigated Hayland", "Pasture/Hay Crops"},
        {"Sub-irrigated Pasture", "Pasture/Hay Crops"},
        {"Irrigated Cropland", "Other"},
        {"Other Row Crops", "Other"},
        {"Other Horticulture", "Tree Nursery"},
        {"Sorghum", "Sorgum"},
        {"Tomatoes", "Vegetables"},
        {"Vineyard", "Grapes"},
        {"sorghum", "sorghum"},
        {"Corn", "Corn"}};
    for (const auto& [landCover, table] : names) EXPECT_EQ(MatchCrop(landCover), table);
    for (const char* zone : {"DAGGETT", "DUCHESNE", "Daggett", "O'Dell's", ""}) {
        EXPECT_EQ(MatchCounty(zone), zone);
    }
}

struct Database : testing::Test {
    Database() {
        IrrigationDefaults defaults;
        defaults.methods = {{"SPR", 0.8, "Sprinkler"}, {"FLD", 0.5, "Flood"}, {"Big Gun", 0.7, ""}};
        defaults.perZone = {{"z", "", {0.6, 0.4, 0}}};
        defaults.perZoneAndCrop = {{"z", "Sorgum", {1, 0, 0}}, {"Z2", "Sorgum", {0, 0, 1}}};
        createIrrigationDatabase(f.application.platform(), path, defaults);
        database = std::make_unique<IrrigationDatabase>(f.application.platform(), path);
        database->createEfficiencyTable();
    }
    FieldValue value(const std::string& crop, const std::string& field) {
        const auto row = database->query("SELECT * FROM IREF WHERE [CropType]='" + crop + "'");
        return row->value(field);
    }
    double number(const std::string& crop, const std::string& field) {
        return std::get<double>(value(crop, field));
    }
    void setMethod(const std::string& code, const std::string& field, const FieldValue& v) {
        const auto row = database->query("SELECT * FROM IRMD WHERE [IRMD]='" + code + "'");
        row->setValue(field, v);
        row->update();
    }
    void setShares(const std::string& crop, double spr, double fld) {
        const auto row = database->query("SELECT * FROM IREF WHERE [CropType]='" + crop + "'");
        row->setValue("SPR", spr);
        row->setValue("FLD", fld);
        row->setValue("Big Gun", 0.0);
        row->update();
    }
    void begin(double cvef) {
        database->ensureMethods("z");
        database->ensureCrops("z", {"Corn", "Sorghum"}, cvef);
    }
    void estimate() {
        database->estimateEfficiencies("z", [this] { ++badEfficiencies; });
    }
    test::IrrigationFixture f;
    std::string path = f.folder.file("IrDB.mdb");
    std::unique_ptr<IrrigationDatabase> database;
    int badEfficiencies = 0;
};

TEST_F(Database, TheEfficiencyTableHasAColumnPerMethodInTheirOrder) {
    const auto rows = database->query("SELECT * FROM IREF");
    std::vector<std::string> names;
    for (int i = 0; i < rows->fieldCount(); ++i) names.push_back(rows->fieldName(i));
    EXPECT_THAT(names, ElementsAre("ZoneUnit", "CropType", "SPR", "FLD", "Big Gun", "FAEF", "CVEF",
                                   "IREF"));
    EXPECT_THAT(methodColumns(*rows), ElementsAre("SPR", "FLD", "Big Gun"));
    EXPECT_TRUE(database->hasEfficiencyTable());
    database->dropEfficiencyTable();
    EXPECT_FALSE(database->hasEfficiencyTable());
}

TEST_F(Database, ACodeThatIsNoColumnNameIsTold) {
    database->dropEfficiencyTable();
    const auto method = database->query("SELECT * FROM IRMDDef WHERE [IRMD]='FLD'");
    method->setValue("IRMD", std::string("F]D"));
    method->update();
    EXPECT_THAT([&] { database->createEfficiencyTable(); },
                testing::ThrowsMessage<PlatformError>(HasSubstr("The method code \"F]D\"")));
    EXPECT_FALSE(database->hasEfficiencyTable());
}

TEST_F(Database, AZoneGetsTheMethodListOnce) {
    database->ensureMethods("z");
    setMethod("SPR", "IRMDEF", 0.9);
    database->ensureMethods("z");
    database->ensureMethods("O'Dell's");
    const auto methods = database->query(IrrigationDatabase::methodsOf("z"));
    EXPECT_EQ(std::get<double>(methods->value("IRMDEF")), 0.9);
    const auto count = database->query("SELECT count(*) AS n FROM IRMD WHERE [ZONEUNIT] = 'z'");
    EXPECT_EQ(std::get<double>(count->value("n")), 3);
    EXPECT_EQ(std::get<std::string>(methods->value("IRMDDES")), "Sprinkler");
    EXPECT_EQ(GetMethodEfficiency(*methods, "Big Gun"), 0.7);
    EXPECT_EQ(GetMethodEfficiency(*methods, "spr"), 0);  // codes compare with case
    EXPECT_EQ(GetMethodEfficiency(*methods, "SPR"), 0.9);
    EXPECT_FALSE(database->query(IrrigationDatabase::methodsOf("O'Dell's"))->eof());
}

TEST_F(Database, TheWorkedExample) {
    begin(0.9);
    setShares("Corn", 0.6, 0.4);
    estimate();
    EXPECT_NEAR(number("Corn", "FAEF"), 0.6452, 5e-5);
    EXPECT_NEAR(number("Corn", "IREF"), 0.5806, 5e-5);
    EXPECT_DOUBLE_EQ(number("Corn", "FAEF"), 1 / (0.6 / 0.8 + 0.4 / 0.5));
    EXPECT_EQ(badEfficiencies, 0);
}

TEST_F(Database, SharesAreNotNormalised) {
    begin(1);
    setShares("Corn", 30, 20);
    estimate();
    EXPECT_DOUBLE_EQ(number("Corn", "FAEF"), 1 / (30 / 0.8 + 20 / 0.5));
}

TEST_F(Database, WithoutSharesARowStays) {
    begin(1);
    setShares("Corn", 0.6, 0.4);
    estimate();
    const double before = number("Corn", "FAEF");
    setShares("Corn", 0, 0);
    estimate();
    EXPECT_EQ(number("Corn", "FAEF"), before);
    EXPECT_TRUE(isNull(value("Sorghum", "FAEF")));
}

TEST_F(Database, MethodsWithoutEfficiencyAreSkipped) {
    begin(1);
    setShares("Corn", 0.5, 0.5);
    setMethod("FLD", "IRMD", std::string("OLD"));
    estimate();
    EXPECT_DOUBLE_EQ(number("Corn", "FAEF"), 0.8 / 0.5);
    setMethod("SPR", "IRMDEF", FieldValue());
    EXPECT_THROW(estimate(), PlatformError);
    EXPECT_EQ(badEfficiencies, 1);
}

TEST_F(Database, ADivisionByZeroEndsTheEstimateWhereItStands) {
    begin(1);
    setShares("Corn", 1, 0);
    setShares("Sorghum", 0, 1);
    setMethod("FLD", "IRMDEF", 0.0);
    EXPECT_THAT([&] { estimate(); },
                testing::ThrowsMessage<PlatformError>(HasSubstr("crop \"Sorghum\" in zone \"z\"")));
    EXPECT_EQ(number("Corn", "FAEF"), 0.8);
    EXPECT_TRUE(isNull(value("Sorghum", "FAEF")));
}

TEST_F(Database, DefaultSharesComeByZoneOrByZoneAndCrop) {
    begin(1);
    database->addDefaultShares("z", DefaultShares::ofZone);
    EXPECT_EQ(number("Corn", "SPR"), 0.6);
    EXPECT_EQ(number("Sorghum", "FLD"), 0.4);
    database->addDefaultShares("z", DefaultShares::ofZoneAndCrop);
    EXPECT_EQ(number("Sorghum", "SPR"), 1);  // stands as Sorgum
    EXPECT_EQ(number("Sorghum", "FLD"), 0);
    EXPECT_EQ(number("Corn", "SPR"), 0);  // has no defaults
    database->ensureCrops("other", {"Barley"}, 1);
    database->addDefaultShares("other", DefaultShares::ofZone);
    EXPECT_EQ(number("Barley", "SPR"), 0);
}

TEST_F(Database, ConveyanceGoesIntoEveryRowOfTheZone) {
    begin(0.9);
    database->ensureCrops("z", {"Barley"}, 0.7);  // has its crops already
    EXPECT_EQ(number("Corn", "CVEF"), 0.7);
    EXPECT_EQ(number("Sorghum", "CVEF"), 0.7);
    EXPECT_TRUE(database->query("SELECT * FROM IREF WHERE [CropType]='Barley'")->eof());
}

TEST(StarterDatabase, SharesFollowTheCrop) {
    const IrrigationDefaults defaults =
        starterDefaults({"b", "a", "b"}, {"Pasture", "Open Water", "Dry Beans", "Corn"});
    ASSERT_EQ(defaults.perZone.size(), 2U);
    ASSERT_EQ(defaults.perZoneAndCrop.size(), 10U);
    for (const MethodShares& row : defaults.perZoneAndCrop) {
        const double sum = std::accumulate(row.shares.begin(), row.shares.end(), 0.0);
        EXPECT_NEAR(sum, row.crop == "Open Water" ? 0 : 1, 1e-12) << row.crop;
        const bool drip = row.crop == "Corn" || row.crop == "Dry Beans" || row.crop == "Other";
        EXPECT_EQ(row.shares.at(2) > 0, drip) << row.crop;
    }
    EXPECT_EQ(defaults.perZoneAndCrop[4].crop, "Pasture/Hay Crops");
    EXPECT_THAT(defaults.perZone[0].shares, ElementsAre(0.367, 0.547, 0.086));
    EXPECT_FALSE(defaults.sources.empty());
}

TEST(StarterDatabase, IsMadeInOneStep) {
    test::IrrigationFixture f;
    const std::string path = f.folder.file("new.mdb");
    IrrigationDefaults defaults = starterDefaults({"z"}, {});
    createIrrigationDatabase(f.application.platform(), path, defaults);
    test::write(path + "-journal", "of a killed run");
    createIrrigationDatabase(f.application.platform(), path, defaults);  // replaces it
    EXPECT_FALSE(std::filesystem::exists(path + "-journal"));
    const auto tables =
        f.application.platform().connections().open(irrigationConnection(path))->tableNames();
    EXPECT_THAT(tables, ElementsAre("IRMDDef", "IRMD", "IR_Dis_1", "IR_Dis_2", "IR_Sources"));
    std::filesystem::remove(path);
    defaults.perZone[0].shares.clear();
    EXPECT_THROW(createIrrigationDatabase(f.application.platform(), path, defaults),
                 std::out_of_range);
    for (const auto& entry : std::filesystem::directory_iterator(f.folder.path())) {
        EXPECT_THAT(entry.path().string(), testing::Not(HasSubstr("mdb")));
    }
}

TEST(StarterDatabase, TheOldOneStaysUntilTheNewOneIsWhole) {
    test::IrrigationFixture f;
    const std::string path = f.folder.file("new.mdb");
    IrrigationDefaults defaults = starterDefaults({"z"}, {});
    createIrrigationDatabase(f.application.platform(), path, defaults);
    const std::string old = test::contentOf(path);
    const std::string dead = f.folder.file(std::string(kUnfinishedPrefix) + "999999999-new.mdb");
    test::write(dead, "of a killed program");
    test::write(path + "-journal", "of an edit that was cut off");
    defaults.perZone[0].shares.clear();
    EXPECT_THROW(createIrrigationDatabase(f.application.platform(), path, defaults),
                 std::out_of_range);
    EXPECT_EQ(test::contentOf(path), old);
    EXPECT_TRUE(std::filesystem::exists(path + "-journal"));
    EXPECT_FALSE(std::filesystem::exists(dead));
}

TEST(CropSummary, EachTypeOnceWithItsPolygonsAndArea) {
    test::IrrigationFixture f;
    IPlatform& platform = f.application.platform();
    const std::vector<Point> ring = {{0, 0}, {0, 10}, {10, 10}, {10, 0}};
    f.makeCropLand({{"Corn", ring}, {"Alfalfa", ring}, {"", ring}, {"Corn", ring}});
    const std::string path = f.folder.file("SumCrop.dbf");
    summarizeCrops(platform, *platform.features().openFeatureClass(f.settings.LandCover), path);
    EXPECT_THAT(summarizedCrops(platform, path), ElementsAre("Alfalfa", "Corn"));
    const auto table = platform.features().openTable(path);
    EXPECT_EQ(table->fields()[0].name, "DESCRIPTIO");
    EXPECT_EQ(std::get<double>(table->value(1, "COUNT")), 2);
    EXPECT_EQ(std::get<double>(table->value(1, "SUM_AREA")), 200);
    platform.features().createFeatureClass(f.folder.file("bare.shp"), true, f.geometry().crs,
                                           {{"Descriptio", FieldType::text, 30, 0}},
                                           {rectangle({0, 0, 20, 10}, {std::string("Rye")})});
    summarizeCrops(platform, *platform.features().openFeatureClass(f.folder.file("bare")), path);
    EXPECT_EQ(std::get<double>(platform.features().openTable(path)->value(0, "SUM_AREA")), 200);
}

}  // namespace
}  // namespace velmora
