// SPDX-License-Identifier: MIT
#include "modelling/run_record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "tests/support/fake_platform.h"
#include "tests/support/test_application.h"

namespace velmora {
namespace {

using testing::ElementsAre;

struct RunRecords : testing::Test {
    RunRecords() {
        settings.OutputWorkspace = "/out";
        settings.Year = "2006";
        platform.files().createFolder("/out");
    }
    const test::FakeJournal::Run& last() { return platform.journal().runs.back(); }

    test::FakePlatform platform;
    test::TestApplication application{platform, "/settings"};
    RunSettings settings;
};

TEST_F(RunRecords, BeginWithTheWholeHeading) {
    RunRecord(application, settings, "kc").finish();
    const std::string kc = last().heading.run;
    const RunRecord record(application, settings, "cropet", {"kc"});
    EXPECT_EQ(last().heading.step, "cropet");
    EXPECT_EQ(last().heading.folder, "/out");
    EXPECT_EQ(last().heading.settings.size(), 35U);
    EXPECT_EQ(last().heading.sources.at("kc"), kc);
    EXPECT_THAT(last().heading.workingFields, ElementsAre("TempTTT", "RefPPT"));
    EXPECT_EQ(last().heading.run, lastRun(platform.files(), "/out", "cropet")->run);
}

TEST_F(RunRecords, AreFailedUnlessTheyComeToTheirEnd) {
    { const RunRecord record(application, settings, "kc"); }
    EXPECT_EQ(last().ending, RunEnding::failed);
    RunRecord(application, settings, "kc").finish();
    EXPECT_EQ(last().ending, RunEnding::complete);
}

TEST_F(RunRecords, ThatCannotBeWrittenAreFailed) {
    platform.journal().ends.failAt(1);
    {
        RunRecord record(application, settings, "kc");
        EXPECT_THROW(record.finish(), PlatformError);
    }
    EXPECT_EQ(last().ending, RunEnding::failed);
}

TEST_F(RunRecords, HearWhatTheUserIsToldMeanwhile) {
    application.prompts().notice("before");
    {
        RunRecord record(application, settings, "kc");
        application.prompts().notice("a notice");
        application.feedback().warning("a warning");
        application.prompts().reason("a reason");
        application.prompts().failure("a failure");
        application.prompts().message("a message");
    }
    application.prompts().notice("after");
    EXPECT_THAT(last().warnings, ElementsAre("a notice", "a warning", "a reason", "a failure"));
}

}  // namespace
}  // namespace velmora
