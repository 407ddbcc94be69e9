// SPDX-License-Identifier: MIT
// What a host says of the inputs before a step.
#include "hosts/chain/input_warnings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct InputWarnings : testing::Test {
    test::MemoryIrrigation f;
    std::vector<std::string> told(const std::string& step) {
        f.application.prompts().notices.clear();
        tellInputWarnings(f.application, step);
        return f.application.prompts().notices;
    }
    void coldDays(double least) {
        f.makeWeather(f.stations(), [=](const std::string& p, const test::Station& s, int m) {
            return p == "TN_" && s.name == "S3" ? FieldValue(least)
                                                : test::MemoryRun::usualWeather(p, s, m);
        });
        f.storeSettings();
    }
};

TEST_F(InputWarnings, AreTheStepsOwn) {
    EXPECT_THAT(told("refet"), IsEmpty());  // without settings the step says so
    coldDays(70);
    EXPECT_THAT(told("refet"), ElementsAre("4 warnings of 2 kinds in the inputs: velmora check "
                                           "shows them"));
    EXPECT_THAT(told("kc"), IsEmpty());
    EXPECT_THAT(told("ppt"), ElementsAre("2 errors of 1 kind in the inputs: velmora check shows "
                                         "them"));  // no precipitation
    EXPECT_THAT(told("cropet"), ElementsAre("1 warning in the inputs: velmora check shows them"));
    EXPECT_THAT(told("all"), ElementsAre(HasSubstr("2 errors, 5 warnings of 4 kinds")));
    coldDays(5);
    EXPECT_THAT(told("refet"), IsEmpty());
}

// The quick look does not try the surfaces, for which a run would fail; the whole check does.
TEST_F(InputWarnings, AreThoseOfAQuickLook) {
    auto stations = f.stations();
    for (auto& s : stations) s.elevation = 1500;
    f.makeStations(stations);
    IPlatform& platform = f.application.platform();
    EXPECT_EQ(inputWarnings(platform, f.settings, "refet"),
              "1 warning in the inputs: velmora check shows them");
    const auto doubts = doubtsOfInputs(platform, f.settings, "refet");
    EXPECT_EQ(doubtCounts(doubts), "4 errors, 1 warning of 3 kinds");
    f.settings.RefETMethod = "9";
    EXPECT_EQ(doubtCounts(doubtsOfInputs(platform, f.settings, "kc")), "1 error");
    EXPECT_EQ(doubtCounts({{Severity::note, {}, {}, {}, "n"}}), "");
    f.settings.WeatherData = "/none";
    EXPECT_THAT(inputWarnings(platform, f.settings, "refet"), HasSubstr("errors"));
}

}  // namespace
}  // namespace velmora
