// SPDX-License-Identifier: MIT
// The water account of a whole run on the real platform, against a plain calculation.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "crop/kc_maps.h"
#include "gis/memory_raster.h"
#include "hosts/results/account/account_annex.h"
#include "hosts/results/account/account_residuals.h"
#include "hosts/results/account/account_table.h"
#include "irrigation/irrigation_requirement_run.h"
#include "irrigation/net_irrigation_run.h"
#include "platform/threads/parallel_loop.h"
#include "tests/support/irrigation_fixture.h"

namespace velmora {
namespace {

// Fields over the zones, with maps, crop ET, precipitation and an efficiency that differs from cell
// to cell; cells of 250 m for the maps and 400 m for the weather.
struct AccountChain : testing::Test {
    test::IrrigationFixture f;
    IPlatform& platform = f.application.platform();

    AccountChain() {
        f.makeCropLand(f.fields());
        f.makeWeather(test::RunFixture::stations(), test::RunFixture::usualWeather,
                      {"TM_", "TN_", "P_"});
        f.storeSettings();
        EXPECT_TRUE(f.run()) << f.allMessages();
        EXPECT_TRUE(f.runPrecipitation()) << f.allMessages();
        makeKcMaps(f.application, f.settings,
                   {f.settings.LandCover, "Descriptio", f.settings.KcTable, 250});
        f.copyKcMaps({"Jun", "Jul"});
        EXPECT_TRUE(f.runCropEt()) << f.allMessages();
        Grid efficiency(GridGeometry{100, 60, 400100, 4499900, 150, f.geometry().crs}, 0);
        for (int r = 0; r < efficiency.geometry.rows; ++r) {
            for (int c = 0; c < efficiency.geometry.columns; ++c) {
                efficiency.at(c, r) =
                    (c + r) % 7 == 0 ? kNoData : 0.4F + 0.005F * static_cast<float>(c);
            }
        }
        // As coarse as crop ET, so that all requirements lie on one lattice.
        Grid coarse(f.output("ET_Jun_4").geometry, kNoData);
        for (int r = 0; r < coarse.geometry.rows; ++r) {
            for (int c = 0; c < coarse.geometry.columns; ++c) {
                coarse.at(c, r) = valueAt(efficiency, centre(coarse.geometry, c, r));
            }
        }
        f.save("faef_500", std::make_shared<MemoryRaster>(coarse));
        EXPECT_TRUE(runNetIrrigation(f.application, f.settings)) << f.allMessages();
        EXPECT_TRUE(runIrrigationRequirement(f.application, f.settings)) << f.allMessages();
    }

    static Point centre(const GridGeometry& g, int c, int r) {
        return {g.columnCentre(c), g.rowCentre(r)};
    }
    // The cell that holds the point.
    static float valueAt(const Grid& grid, Point p) {
        const GridGeometry& g = grid.geometry;
        const int c = static_cast<int>(std::floor((p.x - g.xMin) / g.cellSize));
        const int r = static_cast<int>(std::floor((g.yMax - p.y) / g.cellSize));
        return c < 0 || r < 0 || c >= g.columns || r >= g.rows ? kNoData : grid.at(c, r);
    }
    Account account(std::size_t bandCells = 16'000'000) {
        return makeAccount(platform, f.settings, f.application.feedback(),
                           {.cropField = {}, .bandCells = bandCells});
    }
};

struct PlainSums {
    double cells = 0, withEt = 0, et = 0, ppt = 0, effective = 0, net = 0, bare = 0, water = 0;
};

TEST_F(AccountChain, EveryFigureAgreesWithAPlainCalculation) {
    const Account made = account();
    std::map<std::string, PlainSums> expected;
    for (const std::string month : {"Jun", "Jul"}) {
        const Grid et = f.output("ET_" + month + "_4");
        const Grid ppt = f.output("PPT_" + month);
        const Grid efficiency = f.output("faef_500");
        const GridGeometry cells = f.output("NIR_" + month).geometry;
        ASSERT_TRUE(cells.sameCells(made.cells));
        for (int r = 0; r < cells.rows; ++r) {
            for (int c = 0; c < cells.columns; ++c) {
                const Point p = centre(cells, c, r);
                const int zone = test::shapeAt(f.zones(), p);
                const int field = test::shapeAt(f.fields(), p);
                const std::string crop =
                    field < 0 ? "(no land cover)" : f.fields()[static_cast<std::size_t>(field)].key;
                PlainSums& sums =
                    expected[(zone < 0 ? "(outside all zones)"
                                       : f.zones()[static_cast<std::size_t>(zone)].key) +
                             "|" + (crop.empty() ? "(no crop type)" : crop) + "|" + month];
                ++sums.cells;
                const auto used = static_cast<double>(valueAt(et, p));
                const auto rain = static_cast<double>(valueAt(ppt, p));
                const auto ef = static_cast<double>(valueAt(efficiency, p));
                const auto none = static_cast<double>(kNoData);
                if (used == none) continue;
                ++sums.withEt;
                sums.et += used;
                if (rain == none) continue;
                sums.ppt += rain;
                sums.effective += 0.8 * rain;
                const double net = std::max(0.0, used - 0.8 * rain);
                sums.net += net;
                if (ef == none) {
                    sums.bare += net;
                } else {
                    sums.water += net / ef;
                }
            }
        }
    }
    const AccountTable table =
        accountTable(made, {.zone = true, .crop = true, .month = true}, metricUnits());
    const double hectares = made.cells.cellSize * made.cells.cellSize / 10000;
    const double inch = hectares * 254;
    std::size_t found = 0;
    for (const auto& row : table.rows) {
        const std::string key = keyText(row[0]) + "|" + keyText(row[1]) + "|" + keyText(row[2]);
        ASSERT_TRUE(expected.contains(key)) << key;
        const PlainSums& sums = expected.at(key);
        const auto expectFigure = [&](const std::string& column, double value) {
            for (std::size_t c = 0; c < table.columns.size(); ++c) {
                if (table.columns[c].name != column) continue;
                EXPECT_NEAR(std::get<double>(row[c]), value, 1e-6 * (std::fabs(value) + inch))
                    << key << " " << column;
                ++found;
            }
        };
        expectFigure("land_ha", sums.cells * hectares);
        expectFigure("land_with_crop_et_ha", sums.withEt * hectares);
        expectFigure("crop_et_m3", sums.et * inch);
        expectFigure("precipitation_m3", sums.ppt * inch);
        expectFigure("effective_precipitation_m3", sums.effective * inch);
        expectFigure("net_requirement_m3", sums.net * inch);
        expectFigure("net_requirement_without_efficiency_m3", sums.bare * inch);
        expectFigure("water_requirement_m3", sums.water * inch);
    }
    EXPECT_EQ(table.rows.size(), expected.size());
    EXPECT_EQ(found, 8 * expected.size());
    EXPECT_GT(table.rows.size(), 20U);
}

TEST_F(AccountChain, ClosesAndAgreesWithTheZoneTables) {
    const Account made = account();
    EXPECT_THAT(unclosed(residualsOf(made)), testing::IsEmpty());
    const AccountAnnex annex = annexOf(platform, made);
    ASSERT_EQ(annex.agreements.size(), 3U);
    for (const auto& agreement : annex.agreements) {
        EXPECT_LT(agreement.difference, 1e-9) << agreementText(agreement);
    }
}

TEST_F(AccountChain, BandsAndThreadsChangeNothing) {
    const AccountKeys keys = {true, true, true, true};
    const auto rows = accountTable(account(), keys, usUnits()).rows;
    ASSERT_GT(f.output("NIR_Jun").geometry.rows, 32);
    EXPECT_EQ(accountTable(account(1), keys, usUnits()).rows.size(), rows.size());
    for (const int threads : {1, 2}) {
        platform::useThreads(threads);
        EXPECT_EQ(accountTable(account(), keys, usUnits()).rows, rows);
    }
    platform::useThreads(0);
    const auto banded = accountTable(account(1), keys, usUnits()).rows;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        for (std::size_t c = 0; c < rows[r].size(); ++c) {
            if (const auto* number = std::get_if<double>(&rows[r][c])) {
                EXPECT_NEAR(std::get<double>(banded[r][c]), *number, 1e-12 * std::fabs(*number));
            } else {
                EXPECT_EQ(banded[r][c], rows[r][c]);
            }
        }
    }
}

}  // namespace
}  // namespace velmora
