// SPDX-License-Identifier: MIT
#include "gis/feedback.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/error_trap.h"
#include "tests/support/fake_feedback.h"
#include "tests/support/fake_prompts.h"

namespace velmora {
namespace {

using testing::DoubleEq;
using testing::ElementsAre;

struct FeedbackTest : testing::Test {
    FeedbackTest() { feedback.listen(monitor); }
    Feedback feedback;
    test::RecordingMonitor monitor;
};

TEST_F(FeedbackTest, CarriesWhatTheWorkSays) {
    {
        const FeedbackScope scope(feedback, "Estimate Crop ET");
        feedback.setMessage("Crop ET of Jul ...");
        feedback.setStatus("Jul: no cells");
    }
    EXPECT_THAT(monitor.begun, ElementsAre("Estimate Crop ET"));
    EXPECT_THAT(monitor.messages, ElementsAre("Crop ET of Jul ..."));
    EXPECT_THAT(monitor.statuses, ElementsAre("Jul: no cells"));
    EXPECT_EQ(monitor.ended, 1);
    feedback.ignore(monitor);
    feedback.setMessage("unheard");
    EXPECT_EQ(monitor.messages.size(), 1U);
}

TEST_F(FeedbackTest, AFractionNeverGoesBackAndTellsNoTrifles) {
    feedback.beginPart(0.2, 0.6);
    feedback.advance(0.5);
    feedback.advance(0.501);  // less than a thousandth of the whole
    feedback.advance(0.1);    // the next loop of the part
    feedback.advance(1.5);
    feedback.beginPart(0.6, 1);
    feedback.advance(1);
    feedback.advance(1);
    EXPECT_THAT(monitor.fractions,
                ElementsAre(DoubleEq(0.2), DoubleEq(0.4), DoubleEq(0.6), DoubleEq(1)));
    feedback.begin("again");
    feedback.advance(0.25);
    EXPECT_DOUBLE_EQ(monitor.fractions.back(), 0.25);
}

TEST_F(FeedbackTest, PartsAreEqualWithinTheirStretch) {
    FeedbackParts parts(feedback, 2, 0.5, 0.9);
    parts.next("first");
    feedback.advance(1);
    parts.next();
    feedback.advance(0.5);
    EXPECT_THAT(monitor.fractions, ElementsAre(DoubleEq(0.5), DoubleEq(0.7), DoubleEq(0.8)));
    EXPECT_THAT(monitor.messages, ElementsAre("first"));
}

TEST_F(FeedbackTest, CancelledWorkStopsAtItsNextPart) {
    FeedbackParts parts(feedback, 3);
    parts.next();
    feedback.cancel();
    EXPECT_THROW(parts.next(), Cancelled);
    EXPECT_THROW(throwIfCancelled(feedback), Cancelled);
    feedback.resume();
    EXPECT_NO_THROW(parts.next());
}

// What the user has asked for is not shown as a failure, and no trap goes on after it.
TEST(ErrorTrap, LetsCancellingThrough) {
    test::FakePrompts prompts;
    EXPECT_THROW(trapped(prompts, [] { throw Cancelled(); }), Cancelled);
    EXPECT_THROW(tried([] { throw Cancelled(); }, [](const std::string&) {}), Cancelled);
    EXPECT_TRUE(prompts.messages.empty());
    EXPECT_FALSE(trapped(prompts, "Error in 'X': ", [] { throw std::runtime_error("why"); }));
    EXPECT_THAT(prompts.messages, ElementsAre("Error in 'X': why"));
    EXPECT_EQ(prompts.failures(), 1U);
    EXPECT_TRUE(trapped(prompts, [] {}));
}

}  // namespace
}  // namespace velmora
