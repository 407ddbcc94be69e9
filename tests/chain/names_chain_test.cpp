// SPDX-License-Identifier: MIT
// Names of zones and crops in any script, and folders of any name, through the whole chain.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "crop/frm_kc_editor.h"
#include "gis/gis_functions.h"
#include "irrigation/frm_efficiency.h"
#include "irrigation/irrigation_requirement_run.h"
#include "irrigation/net_irrigation_run.h"
#include "irrigation/starter_database.h"
#include "tests/support/irrigation_fixture.h"

namespace velmora {
namespace {

struct NamesChain : testing::Test {
    const std::vector<std::string> zones = {"Győr-Moson", "Łódź", "Αθήνα", "Écija", "UINTAH"};
    const std::vector<std::string> crops = {"Kukořice", "Люцерна"};
    test::IrrigationFixture f;

    static test::Shape box(const std::string& key, double x, double y) {
        return {key, {{x, y - 2600}, {x, y}, {x + 2600, y}, {x + 2600, y - 2600}}};
    }
    NamesChain() {
        std::vector<test::Shape> areas;
        std::vector<test::Shape> land;
        for (std::size_t z = 0; z < zones.size(); ++z) {
            const double x = 400100 + 2800 * static_cast<double>(z);
            areas.push_back(box(zones[z], x, 4499000));
            land.push_back(box(crops[z % 2], x, 4499000));
        }
        f.makeZones(areas);
        f.makeCropLand(land);
        f.makeKcTable({});
        f.makeWeather(test::RunFixture::stations(), test::RunFixture::usualWeather,
                      {"TM_", "TN_", "P_"});
    }
    // Everything lies in a folder below, and the settings say so.
    void moveTo(const std::string& name) {
        namespace fs = std::filesystem;
        const std::string from = f.folder.path();
        const std::string to = f.folder.file(name);
        fs::create_directory(to);
        for (const auto& entry : fs::directory_iterator(from)) {
            if (entry.path().filename() != name)
                fs::rename(entry, std::filesystem::path(to) / entry.path().filename());
        }
        for (std::string* path :
             {&f.settings.DEM, &f.settings.WeatherStations, &f.settings.WeatherData,
              &f.settings.KcTable, &f.settings.LandCover, &f.settings.Zones,
              &f.settings.OutputWorkspace, &f.settings.ExtentProvider}) {
            if (path->starts_with(from)) *path = to + path->substr(from.size());
        }
        f.application.folder = to + f.application.folder.substr(from.size());
    }
    void makeMaps() {
        frmKcEditor form(f.application, f.settings);
        form.load();
        form.cboFieldList.setText("Descriptio");
        form.cmdListLuType.click();
        form.cmdMatch.click();
        ASSERT_FALSE(form.failed()) << f.allMessages();
        form.cmdMakeMap.click();
        ASSERT_FALSE(form.failed()) << f.allMessages();
    }
    void makeEfficiencyMap() {
        createIrrigationDatabase(f.application.platform(),
                                 joinedPath(parentFolderName(f.settings.Zones), "IrDB.mdb"),
                                 starterDefaults(zones, crops));
        f.application.prompts().answer = true;
        frmEfficiency form(f.application);
        form.load();
        form.cmdApplyIRDB.click();
        ASSERT_FALSE(form.failed()) << f.allMessages();
        for (int zone = 0; zone < 5; ++zone) form.cmbZone.select(zone);
        form.cmdEFMap.click();
        ASSERT_FALSE(form.failed()) << f.allMessages();
    }
    RasterPtr raster(const std::string& name) {
        return f.application.platform()
            .rasters()
            .openFromFolder(f.settings.OutputWorkspace)
            ->openRasterDataset(name)
            ->createDefaultRaster();
    }
    void copy(const std::string& from, const std::string& to) {
        const RasterPtr grid = raster(from);
        f.application.platform()
            .rasters()
            .openFromFolder(f.settings.OutputWorkspace)
            ->save(std::array{RasterToSave{to, grid, "GRID"}});
    }
    std::vector<std::string> keysOf(const std::string& table) {
        const auto rows = f.application.platform().features().openTable(
            joinedPath(f.settings.OutputWorkspace, table));
        std::vector<std::string> keys;
        for (std::size_t r = 0; r < rows->recordCount(); ++r) {
            keys.push_back(keyText(rows->value(r, "ZoneUnit")));
        }
        return keys;
    }
    void runAll() {
        f.storeSettings();
        ASSERT_TRUE(f.run()) << f.allMessages();
        makeMaps();
        for (const std::string month : {"Jun", "Jul"}) copy("Kc_" + month + "_4", "Kc_" + month);
        ASSERT_TRUE(f.runCropEt()) << f.allMessages();
        ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
        ASSERT_TRUE(runNetIrrigation(f.application, f.settings)) << f.allMessages();
        makeEfficiencyMap();
        copy("IREF", "faef_500");
        ASSERT_TRUE(runIrrigationRequirement(f.application, f.settings)) << f.allMessages();
    }
};

TEST_F(NamesChain, EveryZoneAndCropReachesEveryTable) {
    runAll();
    std::vector<std::string> twice = zones;
    twice.insert(twice.end(), zones.begin(), zones.end());
    for (const char* table : {"StatCET", "StatNIR", "StatIRR"}) {
        EXPECT_EQ(keysOf(table), twice) << table;
    }
    const auto kc = f.application.platform().features().openTable(f.settings.KcTable);
    std::set<std::string> types;
    for (std::size_t r = 0; r < kc->recordCount(); ++r) {
        types.insert(keyText(kc->value(r, "CropType")));
    }
    EXPECT_EQ(types, std::set<std::string>(crops.begin(), crops.end()));
    const auto pieces = f.application.platform().features().openFeatureClass(
        joinedPath(f.settings.OutputWorkspace, "Lu_Intersected"));
    ASSERT_EQ(pieces->recordCount(), 5U);
    for (std::size_t r = 0; r < 5; ++r) {
        EXPECT_EQ(keyText(pieces->value(r, "ZONE")), zones[r]);
        EXPECT_EQ(keyText(pieces->value(r, "Descriptio")), crops[r % 2]);
        EXPECT_GT(std::get<double>(pieces->value(r, "IREF")), 0) << zones[r];
    }
}

TEST_F(NamesChain, FoldersMayHaveTheMarksOfConnectionsInTheirNames) {
    moveTo("b;x]y'z");
    runAll();
    EXPECT_EQ(keysOf("StatIRR").size(), 10U);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(f.folder.path()), {}), 1);
}

}  // namespace
}  // namespace velmora
