// SPDX-License-Identifier: MIT
#include "irrigation/irrigation_requirement_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/gis_functions.h"
#include "gis/memory_raster.h"
#include "irrigation/frm_statistics.h"
#include "tests/support/memory_fixtures.h"
#include "tests/support/recording_algebra.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct IrrigationRequirement : testing::Test {
    IrrigationRequirement() { f.storeSettings(); }
    test::MemoryIrrigation f;

    bool run() { return runIrrigationRequirement(f.application, f.settings); }
};

TEST_F(IrrigationRequirement, TheRequirementOverTheEfficiency) {
    const auto algebra = f.application.platform().analysis().mapAlgebra();
    useInputs(algebra->environment());
    const RasterPtr result = irrigationRequirement(
        *algebra, test::rowOf({5, 2, 5, 5, kNoData, 2, 3}), test::rowOf({2, 3, 2, 2, 2, 3, 3}),
        test::rowOf({0.5, 0.5, 0, kNoData, 0.5, kNoData, 0.5}));
    // 3.4 / 0.5; a negative difference; no efficiency twice; no crop ET; nothing needed, but no
    // efficiency either; a small difference.
    EXPECT_THAT(wholeGrid(*result).values,
                ElementsAre(6.8F, 0, kNoData, kNoData, kNoData, kNoData, testing::FloatEq(1.2F)));
}

TEST_F(IrrigationRequirement, ASmallRequirementCountsToo) {
    const auto algebra = f.application.platform().analysis().mapAlgebra();
    useInputs(algebra->environment());
    const RasterPtr result = irrigationRequirement(
        *algebra, test::rowOf({2.1F, 2}), test::rowOf({2.5F, 2.5F}), test::rowOf({0.5, 1}));
    EXPECT_THAT(wholeGrid(*result).values, ElementsAre(testing::FloatNear(0.2F, 1e-6F), 0));
}

TEST_F(IrrigationRequirement, TheExpressionsAreThoseOfTheDesign) {
    const auto algebra = f.application.platform().analysis().mapAlgebra();
    test::RecordingAlgebra recording(*algebra);
    useInputs(recording.environment());
    irrigationRequirement(recording, test::rowOf({5}), test::rowOf({2}), test::rowOf({0.5}));
    EXPECT_THAT(recording.done,
                ElementsAre("ET", "PPT", "[ET] - 0.8 * [PPT]", "AllCell", "[AllCell] >= 0",
                            "PosiOne", "EF", "[AllCell] * [PosiOne] / [EF]"));
}

TEST_F(IrrigationRequirement, CropEtIsThatOfTheChosenMethod) {
    f.settings.RefETMethod = "2";
    f.storeSettings();
    f.saveMonths(6, 7);  // of method 4
    for (const char* month : {"Jun", "Jul"}) {
        f.save(std::string("ET_") + month + "_2", f.filled(9));
    }
    f.save("faef_500", f.filled(0.5F));
    ASSERT_TRUE(run()) << f.allMessages();
    EXPECT_EQ(f.output("IRR_Jul").at(4, 4),
              static_cast<float>(static_cast<double>(9 - 1.6F) / 0.5));
}

TEST_F(IrrigationRequirement, EachMonthMakesAGridALayerAndRows) {
    f.saveMonths(6, 7);
    Grid efficiency(f.cells, 0.5F);
    for (int c = 0; c < 4; ++c) efficiency.at(c, 6) = kNoData;  // in the western zone
    f.save("faef_500", std::make_shared<MemoryRaster>(efficiency));
    std::vector<std::string> shown;
    f.application.dialogs().driver = [&](Form& form) {
        shown.push_back(form.title());
        EXPECT_TRUE(form.isOpen());
        EXPECT_EQ(form.control<DataGrid>("dgdResult").rowCount(), 6U);
        // The folder is free while the user reads.
        f.application.platform().files().lockFolder(f.folder.file("out"));
    };
    ASSERT_TRUE(run()) << f.allMessages();
    EXPECT_THAT(shown, ElementsAre("Zonal Results"));
    EXPECT_TRUE(f.application.messages().empty());
    ASSERT_EQ(f.application.document().layers.size(), 2U);
    const auto& layer = static_cast<const test::FakeLayer&>(*f.application.document().layers[1]);
    EXPECT_EQ(layer.name(), "IRR_Jul");
    EXPECT_EQ(layer.ramp.from, (Rgb{100, 50, 50}));
    EXPECT_EQ(layer.ramp.to, (Rgb{0, 255, 0}));
    EXPECT_EQ(f.application.document().tables.at(0)->name(), "StatIRR");
    EXPECT_EQ(f.output("IRR_Jul").at(4, 4), static_cast<float>(5.4F / 0.5));
    EXPECT_EQ(f.output("IRR_Jul").at(2, 6), kNoData);

    const auto rows = f.tableRows("StatIRR");
    ASSERT_EQ(rows.size(), 6U);
    f.save("faef_500", f.filled(0.5F));
    ASSERT_TRUE(run());
    const auto whole = f.tableRows("StatIRR");
    EXPECT_NEAR(std::get<double>(whole[3][2]) - std::get<double>(rows[3][2]), 4 * 250000.0 / 4047,
                2e-3);
    EXPECT_NEAR(std::get<double>(whole[3][4]), 31 * 10.8 / 304.8, 1e-6);
}

TEST_F(IrrigationRequirement, WithoutEfficiencyTheOldTableStays) {
    f.saveMonths(6, 7);
    f.save("faef_500", f.filled(0.5F));
    ASSERT_TRUE(run());
    const auto before = f.tableRows("StatIRR");
    const std::size_t layers = f.application.document().layers.size();
    DeleteRasterDataset(f.application.platform().rasters(), f.folder.file("out"), "faef_500");
    EXPECT_FALSE(run());
    EXPECT_THAT(f.application.messages().back(), HasSubstr("faef_500"));
    EXPECT_EQ(f.tableRows("StatIRR"), before);
    EXPECT_EQ(f.application.document().layers.size(), layers);
    EXPECT_EQ(f.application.dialogs().modal, 1);
}

TEST_F(IrrigationRequirement, AMissingMonthKeepsTheMonthsBefore) {
    f.saveMonths(6, 6);
    f.save("faef_500", f.filled(0.5F));
    EXPECT_FALSE(run());
    EXPECT_THAT(f.application.messages().back(), HasSubstr("PPT_Jul"));
    EXPECT_TRUE(f.hasOutput("IRR_Jun"));
    EXPECT_EQ(f.tableRows("StatIRR").size(), 3U);
    EXPECT_EQ(f.application.dialogs().modal, 0);
}

TEST_F(IrrigationRequirement, NoMonthsMakeAnEmptyTable) {
    f.settings.BeginMonth = "Oct";
    f.settings.EndMonth = "Apr";
    f.save("faef_500", f.filled(0.5F));
    ASSERT_TRUE(run()) << f.allMessages();
    EXPECT_TRUE(f.tableRows("StatIRR").empty());
    EXPECT_EQ(f.application.dialogs().modal, 1);
}

}  // namespace
}  // namespace velmora
