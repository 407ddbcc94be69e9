// SPDX-License-Identifier: MIT
#include "hosts/chain/copies.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "tests/support/irrigation_fixture.h"

namespace velmora {
namespace {

using State = GridCopy::State;
using testing::ElementsAre;
using testing::IsEmpty;

struct Copies : testing::Test {
    test::IrrigationFixture f;
    IPlatform& platform = f.application.platform();
    Copies() { f.settings.RefETMethod = "4"; }  // June and July

    std::vector<State> states(const std::string& step, bool inThisJob = false) {
        std::vector<State> found;
        for (const GridCopy& copy :
             copiesOfProduct(platform, f.settings, productMadeBy(step), inThisJob)) {
            found.push_back(copy.state);
        }
        return found;
    }
    State efficiency(bool inThisJob = false) { return states("eff", inThisJob).at(0); }
    void age(const std::string& grid) {
        const std::filesystem::path values = f.folder.file("out/" + grid + "/w001001.adf");
        std::filesystem::last_write_time(
            values, std::filesystem::last_write_time(values) - std::chrono::hours(1));
    }
};

TEST_F(Copies, AGridThatIsNotThereHasNone) {
    EXPECT_THAT(states("kc"), ElementsAre(State::nothing, State::nothing));
    f.save("Kc_Jul", f.filled(1.0F));
    EXPECT_THAT(states("kc", true), ElementsAre(State::nothing, State::nothing));
    EXPECT_THAT(states("refet", true), IsEmpty());  // read as it is made
    f.settings.OutputWorkspace = f.folder.file("none");
    EXPECT_THAT(states("eff", true), IsEmpty());
}

TEST_F(Copies, AreDueWhereNothingStandsOrTheGridIsOfThisJob) {
    f.save("Kc_Jun_4", f.filled(1.0F));
    f.save("Kc_Jul_4", f.filled(1.0F));
    f.save("Kc_Jul", f.filled(0.5F));
    EXPECT_THAT(states("kc"), ElementsAre(State::missing, State::standing));
    EXPECT_THAT(states("kc", true), ElementsAre(State::missing, State::renewed));
}

TEST_F(Copies, AnOlderGridThatDiffersIsOutdated) {
    f.save("faef_500", f.filled(0.6F));
    f.save("IREF", f.filled(0.7F));
    age("faef_500");
    EXPECT_EQ(efficiency(), State::outdated);
    EXPECT_EQ(efficiency(true), State::renewed);
    f.save("faef_500", f.filled(0.7F));
    age("faef_500");
    EXPECT_EQ(efficiency(), State::standing);  // older, but the same
    f.save("faef_500", f.filled(0.8F));
    EXPECT_EQ(efficiency(), State::standing);  // the user's own
    age("IREF");
    test::write(f.folder.file("out/faef_500/hdr.adf"), "short");
    age("faef_500");
    age("faef_500");
    EXPECT_EQ(efficiency(), State::standing);  // the step says that it cannot read it
}

TEST_F(Copies, OnlyWhatTakesNothingAwayIsMadeWithoutAQuestion) {
    const auto answers = [](State state) {
        const GridCopy copy{{}, state};
        return std::array{copy.isDue(), copy.isOffered(), copy.isKept()};
    };
    EXPECT_THAT(answers(State::nothing), ElementsAre(false, false, false));
    EXPECT_THAT(answers(State::missing), ElementsAre(true, true, false));
    EXPECT_THAT(answers(State::renewed), ElementsAre(true, true, false));
    EXPECT_THAT(answers(State::outdated), ElementsAre(false, true, true));
    EXPECT_THAT(answers(State::standing), ElementsAre(false, false, true));
}

TEST_F(Copies, AStepWaitsForThoseOfItsSources) {
    for (const char* grid : {"Kc_Jun_4", "Kc_Jul_4", "Kc_Jun", "Kc_Jul", "IREF", "faef_500"}) {
        f.save(grid, f.filled(0.7F));
    }
    const auto read = [&](const std::string& step) {
        std::vector<std::string> due;
        for (const GridCopy& copy : copiesReadBy(platform, f.settings, step, {"refet", "kc"})) {
            due.push_back(copy.names.read + (copy.isDue() ? " due" : " kept"));
        }
        return due;
    };
    EXPECT_THAT(read("cropet"), ElementsAre("Kc_Jun due", "Kc_Jul due"));
    EXPECT_THAT(read("irr"), ElementsAre("faef_500 kept"));
    EXPECT_THAT(read("nir"), IsEmpty());
    EXPECT_THAT(read("kc"), IsEmpty());
}

}  // namespace
}  // namespace velmora
