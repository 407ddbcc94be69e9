// SPDX-License-Identifier: MIT
// Kc maps and crop ET while saving or reading fails.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "crop/crop_et_run.h"
#include "crop/frm_kc_editor.h"
#include "modelling/step_record.h"
#include "settings/run_state.h"
#include "tests/support/each_failure.h"

namespace velmora {
namespace {

using test::MemoryIrrigation;

bool makeMaps(MemoryIrrigation& f) {
    processState().mapsMade = false;
    frmKcEditor form(f.application, f.settings);
    form.load();
    form.cmdMakeMap.click();
    EXPECT_EQ(processState().mapsMade, f.application.prompts().failures() == 0 || !form.failed());
    return processState().mapsMade && !form.failed();
}

// Reference ET of a noted run, and Kc maps.
void prepareCropEt(MemoryIrrigation& f) {
    StepRecorder recorder(f.application.platform().files(), f.settings, "refet");
    for (const std::string month : {"Jun", "Jul"}) {
        f.save("RefET_" + month + "_4", f.filled(6));
        f.save("Kc_" + month, f.filled(0.5F));
        recorder.made("RefET_" + month + "_4");
    }
}

bool cropEt(MemoryIrrigation& f) { return runCropEt(f.application, f.settings); }

TEST(CropFailures, KcMapsLoseNothingInSilence) {
    const auto attempts = test::failEachCall([](MemoryIrrigation&) {}, makeMaps, {});
    EXPECT_EQ(attempts.whole.outputs.grids.size(), 3U);  // and the DEM
    test::expectNothingLostInSilence(attempts);
    for (const char* failing : {"Cannot save the raster ", "Cannot write the file ",
                                "Cannot lock the folder ", "Cannot settle the folder "}) {
        test::expectEnds(attempts, failing);
    }
}

TEST(CropFailures, CropEtLosesNothingInSilence) {
    const auto attempts = test::failEachCall(prepareCropEt, cropEt, {"StatCET"});
    EXPECT_EQ(attempts.whole.outputs.layers.size(), 2U);
    EXPECT_EQ(attempts.whole.outputs.tables.at("StatCET").size(), 6U);
    test::expectNothingLostInSilence(attempts);
    for (const char* failing :
         {"Cannot save the raster ", "Cannot read the raster ", "Cannot write the file ",
          "Cannot lock the folder ", "Cannot settle the folder "}) {
        test::expectEnds(attempts, failing);
    }
}

TEST(CropFailures, ASecondMonthThatCannotBeSavedLeavesTheFirst) {
    MemoryIrrigation f;
    prepareCropEt(f);
    f.world.platform.rasters().saves.failAt(2);
    EXPECT_FALSE(cropEt(f));
    EXPECT_EQ(f.application.messages().back(),
              "Cannot save the raster /basin/out/ET_Jul_4: the test lets it fail");
    EXPECT_TRUE(f.hasOutput("ET_Jun_4"));
    EXPECT_FALSE(f.hasOutput("ET_Jul_4"));
    EXPECT_EQ(f.tableRows("StatCET").size(), 3U);
    EXPECT_TRUE(f.application.document().tables.empty());
}

TEST(CropFailures, ATableThatCannotBeMadeIsToldInEveryMonth) {
    MemoryIrrigation f;
    prepareCropEt(f);
    f.world.platform.features().creates.failAt(1);
    EXPECT_TRUE(cropEt(f));
    EXPECT_EQ(f.application.prompts().failures(), 4U);  // the table, two months, showing it
    EXPECT_TRUE(f.hasOutput("ET_Jul_4"));
}

}  // namespace
}  // namespace velmora
