// SPDX-License-Identifier: MIT
#include "gis/working_layer.h"

#include <gtest/gtest.h>

#include "tests/support/worlds.h"

namespace velmora {
namespace {

struct WorkingLayerTest : testing::Test {
    test::MemoryWorld world;
    test::FakePlatform& platform = world.platform;
    test::Folder& folder = world.folder;

    std::shared_ptr<IFeatureClass> layer() {
        return platform.features().openFeatureClass(folder.file("s.shp"));
    }
    void make(bool withField) {
        std::vector<Field> fields = {{"staname", FieldType::text, 12, 0}};
        if (withField) fields.push_back({"RefPPT", FieldType::number, 10, 3});
        std::vector<NewFeature> features;
        for (const char* name : {"a", "b", "c"}) {
            features.push_back({{{1, 2}}, {std::string(name)}});
            if (withField) features.back().values.push_back(FieldValue(0.5));
        }
        platform.features().createFeatureClass(folder.file("s.shp"), false, "", fields, features);
    }
};

TEST_F(WorkingLayerTest, ReadingShowsWhatWasSetAndTheFileGetsItWhenStored) {
    make(false);
    WorkingLayer working(layer(), "RefPPT");
    EXPECT_GE(working.fieldIndex("refppt"), 0);
    EXPECT_TRUE(isNull(working.value(0, "RefPPT")));
    working.setValue(0, 1.25);
    working.setValue(2, FieldValue());
    EXPECT_EQ(std::get<double>(working.value(0, "REFPPT")), 1.25);
    EXPECT_EQ(std::get<std::string>(working.value(1, "staname")), "b");
    EXPECT_EQ(layer()->fieldIndex("RefPPT"), -1);
    working.store(platform.features());
    EXPECT_EQ(std::get<double>(layer()->value(0, "RefPPT")), 1.25);
    EXPECT_TRUE(isNull(layer()->value(1, "RefPPT")));
}

TEST_F(WorkingLayerTest, StartsWithWhatTheFileHoldsAndKeepsWhatIsNotSet) {
    make(true);
    WorkingLayer working(layer(), "RefPPT");
    EXPECT_EQ(std::get<double>(working.value(1, "RefPPT")), 0.5);
    working.setValue(0, FieldValue());
    working.store(platform.features());
    EXPECT_TRUE(isNull(layer()->value(0, "RefPPT")));
    EXPECT_EQ(std::get<double>(layer()->value(1, "RefPPT")), 0.5);
    EXPECT_EQ(layer()->fields().size(), 2U);
}

TEST_F(WorkingLayerTest, WhatCannotBeStoredLeavesTheTable) {
    make(true);
    WorkingLayer working(layer(), "RefPPT");
    working.setValue(0, 1.25);
    platform.features().saves.failAt(1);
    EXPECT_THROW(working.store(platform.features()), PlatformError);
    EXPECT_EQ(std::get<double>(layer()->value(0, "RefPPT")), 0.5);
    EXPECT_EQ(std::get<double>(working.value(0, "RefPPT")), 1.25);
}

}  // namespace
}  // namespace velmora
