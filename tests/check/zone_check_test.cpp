// SPDX-License-Identifier: MIT
// Zones that hold no cell, and land that two of them claim.
#include "check/zone_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "check/finding_groups.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

using testing::Contains;
using testing::HasSubstr;

struct ZoneCheck : testing::Test {
    test::MemoryRun f;

    // The run has 37 x 21 cells of 400 m from 400000, 4500000 on.
    std::vector<std::string> lines(const std::vector<std::pair<std::string, Envelope>>& zones) {
        std::vector<NewFeature> features;
        for (const auto& [key, extent] : zones) features.push_back(rectangle(extent, {key}));
        f.settings.Zones = f.folder.file("zones.shp");
        f.settings.ZoneField = "ZONE";
        f.application.platform().features().createFeatureClass(
            f.settings.Zones, true, f.geometry().crs, {{"ZONE", FieldType::text, 60, 0}}, features);
        return findingLines(checkZoneCells(f.application.platform(), f.settings, f.geometry()));
    }
};

const std::pair<std::string, Envelope> kWest = {"West", {400000, 4496000, 404000, 4500000}};
const std::pair<std::string, Envelope> kEast = {"East", {404000, 4496000, 408000, 4500000}};

TEST_F(ZoneCheck, NeighboursAreNotTold) {
    EXPECT_EQ(lines({kWest, kEast}), std::vector<std::string>());
}

TEST_F(ZoneCheck, ZonesWithoutACell) {
    EXPECT_THAT(lines({kWest, {"Tiny", {404010, 4499900, 404110, 4499990}}}),
                Contains(HasSubstr("zones.shp: ZONE: Tiny: 2.2 acres hold no centre of a cell")));
    EXPECT_THAT(lines({kWest, {"Away", {300000, 4496000, 304000, 4500000}}}),
                Contains(HasSubstr(": Away: 3953.5 acres hold no centre of a cell")));
}

TEST_F(ZoneCheck, OverlappingZones) {
    const auto told = lines({kWest, {"Both", {402000, 4496000, 408000, 4500000}}});
    ASSERT_EQ(told.size(), 1U);
    EXPECT_THAT(told[0], HasSubstr(": West: 1976.8 acres of 3953.5 acres lie under polygons that "
                                   "stand later in the file"));
    // The later one has all of its cells.
    EXPECT_THAT(lines({{"Both", {402000, 4496000, 408000, 4500000}}, kWest}),
                testing::ElementsAre(HasSubstr(": Both: 1976.")));
    EXPECT_THAT(lines({kWest, {"Over", kWest.second}}),
                Contains(HasSubstr(": West: 3953.5 acres hold no centre")));
}

}  // namespace
}  // namespace velmora
