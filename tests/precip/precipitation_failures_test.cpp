// SPDX-License-Identifier: MIT
// The precipitation run while saving or reading fails; the surfaces are those without kriging.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "tests/support/each_failure.h"

namespace velmora {
namespace {

using test::MemoryIrrigation;
using testing::HasSubstr;

void prepare(MemoryIrrigation& f) {
    f.makeWeather(f.stations(), MemoryIrrigation::usualWeather, {"P_"});
}

void prepareReference(MemoryIrrigation& f) {
    prepare(f);
    f.settings.PrecipitationMethod = "PRISM_REF";
    for (const int month : {6, 7}) {
        f.makeReferenceGrid(month, f.geometry(),
                            [](int c, int r) { return static_cast<float>(2000 + c * r); });
    }
}

// As the command ends what the run throws.
bool run(MemoryIrrigation& f) {
    try {
        return f.runPrecipitation();
    } catch (const PlatformError& e) {
        f.application.prompts().failure(e.what());
        return false;
    }
}

void expectWhole(const test::Attempts& attempts) {
    EXPECT_TRUE(attempts.whole.done);
    EXPECT_EQ(attempts.whole.outputs.layers.size(), 2U);
    test::expectNothingLostInSilence(attempts);
    for (const char* failing :
         {"Cannot save the raster ", "Cannot read the raster ", "Cannot lock the folder "}) {
        test::expectEnds(attempts, failing);
    }
}

TEST(PrecipitationFailures, DetrendedSurfacesLoseNothingInSilence) {
    expectWhole(test::failEachCall(prepare, run, {}));
}

TEST(PrecipitationFailures, ScaledSurfacesLoseNothingInSilence) {
    expectWhole(test::failEachCall(prepareReference, run, {}));
}

TEST(PrecipitationFailures, ASecondMonthThatCannotBeSavedLeavesTheFirst) {
    MemoryIrrigation f;
    prepare(f);
    f.world.platform.rasters().saves.failAt(2);
    EXPECT_FALSE(run(f));
    EXPECT_THAT(f.application.messages().back(), HasSubstr("Cannot save the raster "));
    EXPECT_TRUE(f.hasOutput("PPT_Jun"));
    EXPECT_FALSE(f.hasOutput("PPT_Jul"));
}

// A grid of what a calculation by hand gives: stations of one value are that value everywhere.
TEST(PrecipitationFailures, StationsOfOneValueGiveIt) {
    MemoryIrrigation f;
    f.makeWeather(f.stations(), [](const std::string&, const test::Station&, int) { return 2.5; },
                  {"P_"});
    ASSERT_TRUE(run(f)) << f.allMessages();
    const Grid july = f.output("PPT_Jul");
    EXPECT_NEAR(july.at(0, 0), 2.5F, 1e-5);
    EXPECT_NEAR(july.at(20, 10), 2.5F, 1e-5);
    EXPECT_EQ(july.at(5, 7), kNoData);  // where the DEM has none
}

}  // namespace
}  // namespace velmora
