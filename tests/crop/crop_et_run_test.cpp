// SPDX-License-Identifier: MIT
#include "crop/crop_et_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/memory_raster.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

using testing::ElementsAre;

struct CropEt : testing::Test {
    test::MemoryIrrigation f;
    bool run() { return runCropEt(f.application, f.settings); }
};

TEST_F(CropEt, IsTheCoefficientTimesReferenceEt) {
    Grid kc(f.cells, 0.5F);
    kc.at(3, 3) = kNoData;
    for (const std::string month : {"Jun", "Jul"}) {
        f.save("Kc_" + month, std::make_shared<MemoryRaster>(kc));
        f.save("RefET_" + month + "_4", f.filled(month == "Jun" ? 6.0F : 7.0F));
    }
    ASSERT_TRUE(run()) << f.allMessages();
    EXPECT_THAT(f.application.messages(),
                ElementsAre("Ready to create table", "RefET_Jun_4", "RefET_Jul_4",
                            "Potential crop ET calculation is completed ..."));
    EXPECT_EQ(f.output("ET_Jun_4").at(2, 3), 3);
    EXPECT_EQ(f.output("ET_Jul_4").at(2, 3), 3.5F);
    EXPECT_EQ(f.output("ET_Jul_4").at(3, 3), kNoData);
    ASSERT_EQ(f.tableRows("StatCET").size(), 6U);
    EXPECT_NEAR(std::get<double>(f.tableRows("StatCET")[3][4]), 31 * 3.5 / 304.8, 1e-12);
}

TEST_F(CropEt, OnFinerMapsIsAsFineAsThey) {
    const GridGeometry fine{120, 72, 400000, 4500000, 125, f.cells.crs};
    f.settings.EndMonth = "Jun";
    f.save("Kc_Jun", std::make_shared<MemoryRaster>(Grid(fine, 0.5F)));
    f.save("RefET_Jun_4", f.filled(6));
    ASSERT_TRUE(run()) << f.allMessages();
    EXPECT_EQ(f.output("ET_Jun_4").geometry.cellSize, 125);
    EXPECT_EQ(f.output("ET_Jun_4").at(119, 71), 3);
}

}  // namespace
}  // namespace velmora
