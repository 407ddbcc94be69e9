// SPDX-License-Identifier: MIT
// From the weather to the irrigation water requirement, against a plain calculation.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "gis/gis_functions.h"
#include "irrigation/frm_efficiency.h"
#include "irrigation/irrigation_requirement_run.h"
#include "irrigation/starter_database.h"
#include "tests/support/irrigation_fixture.h"

namespace velmora {
namespace {

// The cell that holds the point; one on a border belongs to the right or lower cell.
float valueAt(const Grid& grid, Point p) {
    const GridGeometry& g = grid.geometry;
    const int c = static_cast<int>(std::floor((p.x - g.xMin) / g.cellSize));
    const int r = static_cast<int>(std::floor((g.yMax - p.y) / g.cellSize));
    return c < 0 || r < 0 || c >= g.columns || r >= g.rows ? kNoData : grid.at(c, r);
}

struct IrrigationChain : testing::Test {
    IrrigationChain() {
        f.makeCropLand(f.fields());
        f.makeWeather(test::RunFixture::stations(), test::RunFixture::usualWeather,
                      {"TM_", "TN_", "P_"});
        f.storeSettings();
        for (const char* month : {"Jun", "Jul"}) {
            f.save(std::string("Kc_") + month, f.filled(0.9F));
        }
        IrrigationDefaults defaults = starterDefaults({}, {});
        for (const test::Shape& zone : f.zones()) {
            defaults.perZone.push_back({zone.key, "", {0.25, 0.5, 0.25}});
        }
        createIrrigationDatabase(f.application.platform(), f.folder.file("IrDB.mdb"), defaults);
    }
    bool makeEfficiencyMap() {
        f.application.prompts().answer = true;
        frmEfficiency form(f.application);
        form.load();
        form.cmdApplyIRDB.click();
        form.txtCvef.enter("0.8");
        for (int zone = 0; zone < 3; ++zone) form.cmbZone.select(zone);
        form.cmdEFMap.click();
        return !form.failed();
    }
    test::IrrigationFixture f;
};

TEST_F(IrrigationChain, EveryCellAndRowAgreesWithAPlainCalculation) {
    ASSERT_TRUE(f.run()) << f.allMessages();
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    ASSERT_TRUE(f.runCropEt()) << f.allMessages();
    ASSERT_TRUE(makeEfficiencyMap()) << f.allMessages();
    const Grid efficiency = f.output("IREF");
    f.save("faef_500", f.application.platform()
                           .rasters()
                           .openFromFolder(f.folder.file("out"))
                           ->openRasterDataset("IREF")
                           ->createDefaultRaster());
    ASSERT_TRUE(runIrrigationRequirement(f.application, f.settings)) << f.allMessages();
    const double overall = 0.8 / (0.25 / 0.6 + 0.5 / 0.75 + 0.25 / 0.9);
    const auto rows = f.tableRows("StatIRR");
    std::size_t row = 0;
    for (const auto& [label, month, days] : {std::tuple{"Jun", 6, 30}, std::tuple{"Jul", 7, 31}}) {
        const Grid et = f.output(std::string("ET_") + label + "_4");
        const Grid ppt = f.output(std::string("PPT_") + label);
        const Grid irr = f.output(std::string("IRR_") + label);
        ASSERT_EQ(irr.geometry.cellSize, 400);
        std::vector<double> sums(3, 0);
        std::vector<double> counts(3, 0);
        for (int r = 0; r < irr.geometry.rows; ++r) {
            for (int c = 0; c < irr.geometry.columns; ++c) {
                const Point p{irr.geometry.columnCentre(c), irr.geometry.rowCentre(r)};
                const float water = valueAt(et, p);
                const float rain = valueAt(ppt, p);
                const float ef = valueAt(efficiency, p);
                if (water == kNoData || rain == kNoData || ef == kNoData) {
                    ASSERT_EQ(irr.at(c, r), kNoData) << c << ' ' << r;
                    continue;
                }
                ASSERT_NEAR(ef, overall, 1e-7);
                const double expected =
                    std::max(0.0, static_cast<double>(water) - 0.8 * static_cast<double>(rain)) /
                    static_cast<double>(ef);
                ASSERT_NEAR(irr.at(c, r), expected, 1e-6 * (1 + expected));
                const int zone = test::shapeAt(f.zones(), p);
                if (zone < 0) continue;
                sums[static_cast<std::size_t>(zone)] += static_cast<double>(irr.at(c, r));
                ++counts[static_cast<std::size_t>(zone)];
            }
        }
        for (std::size_t z = 0; z < 3; ++z) {
            ASSERT_GT(counts[z], 10);
            ASSERT_LT(row, rows.size());
            const double acres = counts[z] * 400 * 400 / 4047;
            const double depth = days * sums[z] / counts[z] / 304.8;
            EXPECT_EQ(std::get<std::string>(rows[row][0]), f.zones()[z].key.substr(0, 25));
            EXPECT_NEAR(std::get<double>(rows[row][2]), acres, 6e-4);
            EXPECT_EQ(std::get<double>(rows[row][3]), month);
            EXPECT_NEAR(std::get<double>(rows[row][4]) / depth, 1, 1e-9);
            EXPECT_NEAR(std::get<double>(rows[row][5]) / (depth * acres), 1, 1e-9);
            ++row;
        }
    }
    EXPECT_EQ(row, rows.size());
}

}  // namespace
}  // namespace velmora
