// SPDX-License-Identifier: MIT
#include "gis/errors.h"

#include <gtest/gtest.h>

#include <exception>
#include <vector>

#include "tests/support/fake_prompts.h"

namespace velmora::test {
namespace {

const ErrorPlace kPlace{.file = "/w.dbf", .field = "P_Jan", .record = 3, .station = "Logan"};

// What a host hears of failures.
class PlacePrompts : public FakePrompts {
  public:
    std::vector<ErrorPlace> places;

  protected:
    void showPlace(const ErrorPlace& place) override { places.push_back(place); }
};

TEST(Errors, TellTheirPlaceBesideTheirText) {
    const PlatformError bare("no memory");
    EXPECT_TRUE(bare.place().empty());
    const PlatformError placed("bad", kPlace);
    EXPECT_STREQ(placed.what(), "bad");
    EXPECT_EQ(placed.place(), kPlace);
    EXPECT_FALSE(placed.place().empty());
    PlatformError copy = bare;
    copy = placed;
    EXPECT_EQ(copy.place(), kPlace);
}

TEST(Errors, AFailureInAFieldNamesFileRecordAndField) {
    const PlatformError error = errorInField(kPlace, "\"x\" is no number");
    EXPECT_STREQ(error.what(), "In /w.dbf, record 3, field P_Jan: \"x\" is no number");
    EXPECT_EQ(error.place(), kPlace);
}

TEST(Errors, TheHandledFailureTellsItsPlace) {
    EXPECT_TRUE(placeOfHandled().empty());
    try {
        throw PlatformError("bad", kPlace);
    } catch (const std::exception&) {
        EXPECT_EQ(placeOfHandled(), kPlace);
    }
    try {
        throw std::runtime_error("bad");
    } catch (const std::exception&) {
        EXPECT_TRUE(placeOfHandled().empty());
    }
    EXPECT_TRUE(placeOfHandled().empty());
}

TEST(Errors, PromptsHearWhereWhatIsShownFailed) {
    PlacePrompts prompts;
    prompts.failure("Run Settings First,Please!");
    try {
        throw PlatformError("bad", kPlace);
    } catch (const std::exception& e) {
        prompts.reason(e.what());
        prompts.failure("Error in 'GetParameters': " + std::string(e.what()));
        prompts.notice("a notice is no failure");
    }
    EXPECT_EQ(prompts.places, (std::vector<ErrorPlace>{{}, kPlace, kPlace}));
}

}  // namespace
}  // namespace velmora::test
