// SPDX-License-Identifier: MIT
#include "settings/modelling_extent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

TEST(ModellingExtent, ProposesA250thOfTheShorterSide) {
    const Envelope extent{0, 0, 25000, 10000};
    EXPECT_EQ(proposedCellSize(extent), 40.0F);
    EXPECT_EQ(truncatedCounts(extent, 40).width, 625);
    EXPECT_EQ(truncatedCounts(extent, 40).height, 250);
}

TEST(ModellingExtent, ChoosingTruncatesAndEditingRounds) {
    EXPECT_EQ(roundedCounts({0, 0, 25000, 10000}, 30)->width, 833);
    EXPECT_EQ(roundedCounts({0, 0, 25000, 10000}, 30)->height, 333);
    EXPECT_EQ(truncatedCounts({0, 0, 25010, 10000}, 40).width, 625);
    EXPECT_EQ(roundedCounts({0, 0, 25010, 10000}, 40)->width, 625);
    EXPECT_EQ(truncatedCounts({0, 0, 25030, 10000}, 40).width, 625);
    EXPECT_EQ(roundedCounts({0, 0, 25030, 10000}, 40)->width, 626);
}

TEST(ModellingExtent, HalvesGoToTheEvenNeighbour) {
    const auto counts = roundedCounts({0, 0, 25, 35}, 10);
    EXPECT_EQ(counts->width, 2);
    EXPECT_EQ(counts->height, 4);
}

TEST(ModellingExtent, CountsBeyond16BitAreNone) {
    EXPECT_FALSE(roundedCounts({0, 0, 25000, 10000}, 0));
    EXPECT_FALSE(roundedCounts({0, 0, 25000, 10000}, 0.5));
    EXPECT_EQ(roundedCounts({0, 0, 32767, 10}, 1)->width, 32767);
    EXPECT_FALSE(roundedCounts({0, 0, 32768, 10}, 1));
}

TEST(ModellingExtent, RunGridIsTheProviders) {
    test::MemoryRun f;
    EXPECT_TRUE(runGeometry(f.application.platform(), f.settings).sameCells(f.geometry()));
}

TEST(ModellingExtent, DegreesAndFeetAndNothingAreRefused) {
    test::MemoryRun f;
    auto& platform = f.application.platform();
    f.makeDomain({-112, 43, -111, 44}, platform.spatialReferences().createGeographic(4326));
    EXPECT_THAT([&] { runGeometry(platform, f.settings); },
                ThrowsMessage<PlatformError>(HasSubstr("is in degrees")));
    f.makeDomain({0, 0, 1000, 1000}, platform.spatialReferences().createProjected(2228));
    EXPECT_THAT([&] { runGeometry(platform, f.settings); },
                ThrowsMessage<PlatformError>(HasSubstr("but cell sizes are metres")));
    f.makeDomain({0, 0, 1000, 1000}, "");
    EXPECT_THAT([&] { runGeometry(platform, f.settings); },
                ThrowsMessage<PlatformError>(HasSubstr("no coordinate system")));
}

TEST(ModellingExtent, LayersMustBeInMetresWhereTheySayAnything) {
    test::MemoryRun f;
    auto& platform = f.application.platform();
    const auto require = [&](const std::string& crs) {
        f.makeDomain({-112, 43, -111, 44}, crs);
        requireMetres(platform, *platform.features().openFeatureClass(f.settings.ExtentProvider),
                      "land cover");
    };
    auto& systems = platform.spatialReferences();
    EXPECT_NO_THROW(require(""));
    EXPECT_NO_THROW(require(systems.createProjected(26912)));
    EXPECT_THAT([&] { require(systems.createGeographic(4326)); },
                ThrowsMessage<PlatformError>(HasSubstr("The land cover")));
    EXPECT_THAT([&] { require(systems.createProjected(3566)); },
                ThrowsMessage<PlatformError>(testing::AllOf(
                    HasSubstr("The land cover"), HasSubstr("is in units of 0.30480060960121"),
                    HasSubstr("but cell sizes are metres: project it"))));
}

}  // namespace
}  // namespace velmora
