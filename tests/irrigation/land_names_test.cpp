// SPDX-License-Identifier: MIT
#include "irrigation/land_names.h"

#include <gtest/gtest.h>

#include "irrigation/starter_database.h"

namespace velmora {
namespace {

TEST(LandNames, OfCrops) {
    for (const char* name : {"Alfalfa",
                             "Corn",
                             "Small Grains",
                             "Grains",
                             "Oat",
                             "Timothy",
                             "Millet",
                             "Lucerne",
                             "Dry Beans",
                             "Dry Edible Beans",
                             "Sugar Beets",
                             "Winter Wheat",
                             "Pasture",
                             "Sub-irrigated Pasture",
                             "Irrigated Cropland",
                             "Other Row Crops",
                             "Grass / Turf",
                             "O'Brien Corn",
                             "Vineyard",
                             "POTATOES",
                             "Fruit"}) {
        EXPECT_EQ(landKindOf(name), LandKind::crop) << name;
    }
}

TEST(LandNames, OfLandThatIsNotIrrigated) {
    for (const char* name : {"Water",
                             "Open Water",
                             "Not Irrigated",
                             "Non irrigated pasture",
                             "Non-irrigated Hay",
                             "Nonirrigated",
                             "Lake",
                             "River",
                             "Reservoir",
                             "Commercial",
                             "Industrial",
                             "Airport",
                             "Rock",
                             "Snow/Ice",
                             "Playa",
                             "Shrubland",
                             "Grassland",
                             "Open Space",
                             "Wheat-Fallow",
                             "Dryland Wheat",
                             "Dry Pasture",
                             "Idle",
                             "Urban grass"}) {
        EXPECT_EQ(landKindOf(name), LandKind::notIrrigated) << name;
    }
}

TEST(LandNames, ThatTellNothing) {
    for (const char* name : {"", "Class 12", "Other", "Trees", "7", "Acornfield"}) {
        EXPECT_EQ(landKindOf(name), LandKind::unknown) << name;
    }
}

TEST(LandNames, OfCloseGrowingCropsHaveNoDrip) {
    for (const char* name : {"Small Grains", "Oat", "Timothy", "Millet", "Lucerne", "Barley"}) {
        EXPECT_TRUE(isCloseGrowing(name)) << name;
    }
    EXPECT_FALSE(isCloseGrowing("Corn"));
}

// Types of one row of the default shares are irrigated when one of them is.
TEST(StarterDefaults, GiveSharesToWhatIsIrrigated) {
    const auto surface = [](const std::vector<std::string>& types, const std::string& row,
                            bool unknownIrrigated = false) {
        for (const MethodShares& shares :
             starterDefaults({"West"}, types, unknownIrrigated).perZoneAndCrop) {
            if (shares.crop == row) return shares.shares.at(0);
        }
        return -1.0;
    };
    EXPECT_GT(surface({"Corn"}, "Corn"), 0.3);
    EXPECT_EQ(surface({"Lake"}, "Lake"), 0);
    EXPECT_EQ(surface({"Class 12"}, "Class 12"), 0);
    EXPECT_GT(surface({"Class 12"}, "Class 12", true), 0.3);
    EXPECT_EQ(surface({"Lake"}, "Lake", true), 0);
    EXPECT_GT(surface({"Corn"}, "Other"), 0.3);
    EXPECT_EQ(surface({"Other"}, "Other"), 0);
    EXPECT_GT(surface({"Other", "Irrigated Cropland"}, "Other"), 0.3);
    const LandTypes types = landTypes({"Lake", "Corn", "Class 12", "Corn"});
    EXPECT_EQ(types.irrigated, std::vector<std::string>{"Corn"});
    EXPECT_EQ(types.notIrrigated, std::vector<std::string>{"Lake"});
    EXPECT_EQ(types.unknown, std::vector<std::string>{"Class 12"});
}

}  // namespace
}  // namespace velmora
