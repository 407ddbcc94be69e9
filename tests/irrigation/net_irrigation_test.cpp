// SPDX-License-Identifier: MIT
#include "irrigation/net_irrigation_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/memory_raster.h"
#include "gis/month_names.h"
#include "irrigation/requirement_series.h"
#include "tests/support/memory_fixtures.h"
#include "tests/support/recording_algebra.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct NetIrrigation : testing::Test {
    test::MemoryIrrigation f;
    IPlatform& platform = f.application.platform();

    bool run() { return runNetIrrigation(f.application, f.settings); }
};

TEST_F(NetIrrigation, WhatPrecipitationDoesNotCover) {
    const auto algebra = platform.analysis().mapAlgebra();
    useInputs(algebra->environment());
    const RasterPtr result = netIrrigationRequirement(
        *algebra, test::rowOf({2, 5, 4, kNoData, 3, 0}), test::rowOf({3, 2, 5, 1, kNoData, 0}));
    // 2 - 2.4 is negative, 5 - 1.6, 4 - 4 exactly, and no data on either side.
    const Grid grid = wholeGrid(*result);
    EXPECT_THAT(grid.values, ElementsAre(0, 3.4F, 0, kNoData, kNoData, 0));
}

TEST_F(NetIrrigation, IsCropEtLessEffectivePrecipitationPlusItsSurplus) {
    const auto algebra = platform.analysis().mapAlgebra();
    useInputs(algebra->environment());
    const RasterPtr et = test::rowOf({2, 5, 4, kNoData, 3, 0});
    const RasterPtr ppt = test::rowOf({3, 2, 5, 1, kNoData, 0});
    EXPECT_THAT(wholeGrid(*effectivePrecipitation(*algebra, ppt)).values,
                ElementsAre(2.4F, 1.6F, 4, 0.8F, kNoData, 0));
    EXPECT_THAT(wholeGrid(*precipitationSurplus(*algebra, et, ppt)).values,
                ElementsAre(testing::FloatEq(0.4F), 0, 0, kNoData, kNoData, 0));
}

TEST_F(NetIrrigation, ASmallShortageCountsToo) {
    const auto algebra = platform.analysis().mapAlgebra();
    useInputs(algebra->environment());
    const RasterPtr result =
        netIrrigationRequirement(*algebra, test::rowOf({2.001F, 2.4F}), test::rowOf({2.5F, 2.5F}));
    EXPECT_THAT(wholeGrid(*result).values,
                ElementsAre(testing::FloatNear(0.001F, 1e-6F), testing::FloatNear(0.4F, 1e-6F)));
}

TEST_F(NetIrrigation, TheExpressionsAreThoseOfTheDesign) {
    const auto algebra = platform.analysis().mapAlgebra();
    test::RecordingAlgebra recording(*algebra);
    useInputs(recording.environment());
    netIrrigationRequirement(recording, test::rowOf({5}), test::rowOf({2}));
    EXPECT_THAT(recording.done, ElementsAre("ET", "PPT", "[ET] - 0.8 * [PPT]", "AllCell",
                                            "[AllCell] >= 0", "PosiOne", "[AllCell] * [PosiOne]"));
}

TEST_F(NetIrrigation, CropEtIsThatOfTheChosenMethod) {
    f.settings.BeginMonth = f.settings.EndMonth = "Jul";
    f.settings.RefETMethod = "2";
    f.saveMonths(7, 7);  // of method 4
    f.save("ET_Jul_2", f.filled(9));
    ASSERT_TRUE(run()) << f.allMessages();
    EXPECT_EQ(f.output("NIR_Jul").at(4, 4), static_cast<float>(9 - 0.8 * 2));
}

TEST_F(NetIrrigation, SevenMonthsMakeSevenGridsLayersAndRowsPerZone) {
    f.settings.BeginMonth = "Apr";
    f.settings.EndMonth = "Oct";
    f.saveMonths(4, 10);
    ASSERT_TRUE(run()) << f.allMessages();
    EXPECT_TRUE(f.application.messages().empty());
    ASSERT_EQ(f.application.document().layers.size(), 7U);
    const auto& layer = static_cast<const test::FakeLayer&>(*f.application.document().layers[6]);
    EXPECT_EQ(layer.name(), "NIR_Oct");
    EXPECT_EQ(layer.ramp.from, (Rgb{100, 50, 50}));
    EXPECT_EQ(layer.ramp.to, (Rgb{0, 255, 0}));
    ASSERT_EQ(f.application.document().tables.size(), 1U);
    EXPECT_EQ(f.application.document().tables[0]->name(), "StatNIR");
    const auto rows = f.tableRows("StatNIR");
    ASSERT_EQ(rows.size(), 21U);
    const double mean = static_cast<double>(static_cast<float>(7 - 0.8 * 2));
    EXPECT_NEAR(std::get<double>(rows[9][4]), 31 * mean / 304.8, 1e-12);
    EXPECT_EQ(f.output("NIR_Jul").at(4, 4), static_cast<float>(7 - 0.8 * 2));
}

TEST_F(NetIrrigation, CellsWithoutPrecipitationDoNotCount) {
    f.settings.BeginMonth = f.settings.EndMonth = "Jul";
    f.saveMonths(7, 7);
    ASSERT_TRUE(run());
    const double all = std::get<double>(f.tableRows("StatNIR")[0][2]);
    Grid ppt(f.cells, 2);
    for (int c = 0; c < 4; ++c) ppt.at(c, 6) = kNoData;  // four cells of the western zone
    f.save("PPT_Jul", std::make_shared<MemoryRaster>(ppt));
    ASSERT_TRUE(run());
    EXPECT_EQ(f.output("NIR_Jul").at(2, 6), kNoData);
    EXPECT_NEAR(std::get<double>(f.tableRows("StatNIR")[0][2]), all - 4 * 250000.0 / 4047, 2e-3);
}

TEST_F(NetIrrigation, AMissingGridKeepsWhatWasMade) {
    f.saveMonths(6, 6);
    EXPECT_FALSE(run());
    EXPECT_THAT(f.application.messages().back(), HasSubstr("out/PPT_Jul"));
    EXPECT_TRUE(f.hasOutput("NIR_Jun"));
    EXPECT_EQ(f.tableRows("StatNIR").size(), 3U);
    EXPECT_TRUE(f.application.document().tables.empty());
}

TEST_F(NetIrrigation, NoMonthsMakeAnEmptyTable) {
    f.settings.BeginMonth = "Oct";
    f.settings.EndMonth = "Apr";
    ASSERT_TRUE(run());
    EXPECT_TRUE(f.tableRows("StatNIR").empty());
    EXPECT_EQ(f.application.document().tables.size(), 1U);
}

TEST_F(NetIrrigation, AWholeChainEndsInTheDifference) {
    f.makeWeather(test::RunDomain::stations(), test::RunDomain::usualWeather, {"TM_", "TN_", "P_"});
    ASSERT_TRUE(f.run()) << f.allMessages();
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    for (const char* month : {"Jun", "Jul"}) f.save(std::string("Kc_") + month, f.filled(0.9F));
    ASSERT_TRUE(f.runCropEt()) << f.allMessages();
    ASSERT_TRUE(run()) << f.allMessages();
    const Grid et = f.output("ET_Jul_4");
    const Grid ppt = f.output("PPT_Jul");
    const Grid nir = f.output("NIR_Jul");
    ASSERT_EQ(nir.geometry.cellSize, 400);
    for (int r = 0; r < nir.geometry.rows; ++r) {
        for (int c = 0; c < nir.geometry.columns; ++c) {
            const double expected = std::max(
                0.0, static_cast<double>(et.at(c, r)) - 0.8 * static_cast<double>(ppt.at(c, r)));
            if (et.at(c, r) == kNoData || ppt.at(c, r) == kNoData) {
                EXPECT_EQ(nir.at(c, r), kNoData);
            } else {
                ASSERT_NEAR(nir.at(c, r), expected, 1e-6 * (1 + expected));
            }
        }
    }
}

}  // namespace
}  // namespace velmora
