// SPDX-License-Identifier: MIT
#include "platform/tables/joined_layer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "platform/platform.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

struct Join : testing::Test {
    test::TempFolder folder;
    Platform platform;
    std::unique_ptr<IJoinedLayer> joined;

    Join() {
        platform.features().createFeatureClass(
            folder.file("stations.shp"), false, "",
            {{"staname", FieldType::text, 12, 0}, {"ELEVATION", FieldType::number, 8, 1}},
            {{{{1, 2}}, {std::string("A"), 1000.0}},
             {{{3, 4}}, {std::string("b"), 2000.0}},
             {{{5, 6}}, {std::string("C"), FieldValue()}},
             {{{7, 8}}, {FieldValue(), 5.0}}});
        platform.features().createTable(
            folder.file("wx 06.dbf"),
            {{"STN", FieldType::text, 20, 0}, {"TM_Jan", FieldType::number, 8, 3}},
            {{std::string("A"), -20.0},
             {std::string("B"), 5.0},
             {std::string("C"), -19.9},
             {std::string("A"), 99.0},
             {FieldValue(), 1.0}});
        joined = open("STN", "staname");
    }
    std::unique_ptr<IJoinedLayer> open(const std::string& originKey, const std::string& key) {
        return platform.memoryRelationships().open(
            {"JoinTable", platform.features().openTable(folder.file("wx 06.dbf")), originKey,
             platform.features().openFeatureClass(folder.file("stations.shp")), key, "Forward",
             "Backward"});
    }
};

TEST_F(Join, KeysMatchWithCaseAndTheFirstRecordWins) {
    EXPECT_EQ(joined->matchedRecords(), 2U);  // A and C; "b" is not "B", null matches nothing
    EXPECT_EQ(std::get<double>(joined->value(0, "wx 06.TM_Jan")), -20);
    EXPECT_TRUE(isNull(joined->value(1, "wx 06.TM_Jan")));
    EXPECT_EQ(std::get<double>(joined->value(2, "wx 06.tm_jan")), -19.9);
    EXPECT_TRUE(isNull(joined->value(3, "wx 06.TM_Jan")));
    EXPECT_EQ(std::get<double>(joined->value(1, "stations.elevation")), 2000);
}

TEST_F(Join, WhereClausesAreStrictAndSkipNull) {
    EXPECT_THAT(joined->select("[wx 06.TM_Jan] > -20 AND [wx 06.TM_Jan] < 80"), ElementsAre(2));
    EXPECT_THAT(joined->select("stations.ELEVATION >= 1000"), ElementsAre(0, 1));
    EXPECT_THAT(joined->select("NOT [wx 06.TM_Jan] > 0"), ElementsAre(0, 2));
}

TEST_F(Join, TheCalculatorKeepsNull) {
    const auto values = platform.calculator().calculate(
        *joined, {0, 2}, "[wx 06.TM_Jan]--0.5 * [stations.ELEVATION]");
    EXPECT_EQ(values[0], -20 + 500);
    EXPECT_FALSE(values[1].has_value());
}

TEST_F(Join, UnknownNamesAndTextsAreTold) {
    EXPECT_THAT([&] { open("KEY", "staname"); },
                ThrowsMessage<PlatformError>(
                    testing::AllOf(HasSubstr("no field KEY"), HasSubstr("STN, TM_Jan"))));
    EXPECT_THAT([&] { joined->select("other.X > 1"); },
                ThrowsMessage<PlatformError>(HasSubstr("belongs neither")));
    EXPECT_THAT([&] { joined->select("stations.staname > 1"); },
                ThrowsMessage<PlatformError>(HasSubstr("holds text")));
    EXPECT_TRUE(joined->hasField("wx 06.TM_Jan"));
    EXPECT_FALSE(joined->hasField("wx 06.TM_Feb"));
    EXPECT_FALSE(joined->hasField("TM_Jan"));
}

TEST_F(Join, ALayerWithoutAJoinGoesByItsOwnNames) {
    const auto layer = platform.memoryRelationships().openUnjoined(
        platform.features().openFeatureClass(folder.file("stations.shp")));
    EXPECT_THAT(layer->select("ELEVATION <> 1000"), ElementsAre(1, 3));
    EXPECT_TRUE(layer->hasField("staname"));
    EXPECT_FALSE(layer->hasField("stations.staname"));
    EXPECT_EQ(std::get<double>(layer->value(3, "elevation")), 5);
    EXPECT_EQ(layer->matchedRecords(), 0U);
    EXPECT_THROW(layer->select("NONE <> 0"), PlatformError);
}

}  // namespace
}  // namespace velmora::platform
