// SPDX-License-Identifier: MIT
// Net and gross irrigation requirement while saving or reading fails.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "irrigation/irrigation_requirement_run.h"
#include "irrigation/net_irrigation_run.h"
#include "tests/support/each_failure.h"

namespace velmora {
namespace {

using test::MemoryIrrigation;

void prepare(MemoryIrrigation& f) {
    f.storeSettings();
    f.saveMonths(6, 7);
    f.save("faef_500", f.filled(0.5F));
}

bool runNet(MemoryIrrigation& f) { return runNetIrrigation(f.application, f.settings); }

bool runGross(MemoryIrrigation& f) { return runIrrigationRequirement(f.application, f.settings); }

// Kinds of failures that no step works around.
const std::vector<std::string> kEnding = {"Cannot save the raster ", "Cannot read the raster ",
                                          "Cannot write the file ", "Cannot lock the folder ",
                                          "Cannot settle the folder "};

TEST(RequirementFailures, NetLosesNothingInSilence) {
    const auto attempts = test::failEachCall(prepare, runNet, {"StatNIR"});
    EXPECT_EQ(attempts.whole.outputs.layers.size(), 2U);
    EXPECT_EQ(attempts.whole.outputs.tables.at("StatNIR").size(), 6U);
    test::expectNothingLostInSilence(attempts);
    for (const std::string& failing : kEnding) test::expectEnds(attempts, failing);
}

TEST(RequirementFailures, GrossLosesNothingInSilence) {
    const auto attempts = test::failEachCall(prepare, runGross, {"StatIRR"});
    EXPECT_EQ(attempts.whole.outputs.layers.size(), 2U);
    EXPECT_EQ(attempts.whole.outputs.tables.at("StatIRR").size(), 6U);
    test::expectNothingLostInSilence(attempts);
    for (const std::string& failing : kEnding) test::expectEnds(attempts, failing);
}

TEST(RequirementFailures, ASecondMonthThatCannotBeSavedLeavesTheFirst) {
    MemoryIrrigation f;
    prepare(f);
    f.world.platform.rasters().saves.failAt(2);
    EXPECT_FALSE(runNet(f));
    EXPECT_THAT(
        f.application.messages(),
        testing::ElementsAre("Cannot save the raster /basin/out/NIR_Jul: the test lets it fail"));
    EXPECT_TRUE(f.hasOutput("NIR_Jun"));
    EXPECT_FALSE(f.hasOutput("NIR_Jul"));
    EXPECT_EQ(f.tableRows("StatNIR").size(), 3U);
    EXPECT_TRUE(f.application.document().tables.empty());
}

TEST(RequirementFailures, ResultsThatCannotBeShownAreToldAndStay) {
    MemoryIrrigation f;
    prepare(f);
    f.world.platform.connections().queries.failAt(1);
    EXPECT_TRUE(runGross(f));
    EXPECT_EQ(f.application.prompts().failures(), 1U);
    EXPECT_EQ(f.tableRows("StatIRR").size(), 6U);
    EXPECT_EQ(f.application.dialogs().modal, 1);
}

}  // namespace
}  // namespace velmora
