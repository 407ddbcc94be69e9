// SPDX-License-Identifier: MIT
#include "modelling/step_record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "tests/support/fakes.h"

namespace velmora {
namespace {

struct StepRecords : testing::Test {
    StepRecords() {
        settings.OutputWorkspace = "/out";
        settings.ExtentProvider = "/in/domain = old.shp";
        settings.CellSize = 250.5;
        settings.Year = "2006";
    }
    test::MemoryFiles files;
    RunSettings settings;
};

TEST_F(StepRecords, NothingIsNotedBeforeTheFirstRun) {
    EXPECT_FALSE(lastRun(files, "/out", "refet"));
}

TEST_F(StepRecords, ReadsWhatWasNoted) {
    StepRecorder refet(files, settings, "refet");
    refet.made("RefET_Jun_2");
    refet.made("RefET_Jul_2");
    const auto run = lastRun(files, "/out", "refet");
    ASSERT_TRUE(run);
    EXPECT_THAT(run->made, testing::ElementsAre("RefET_Jun_2", "RefET_Jul_2"));
    EXPECT_TRUE(run->lists("RefET_Jul_2"));
    EXPECT_FALSE(run->lists("RefET_Jul"));
    EXPECT_EQ(run->settings, recordedSettings(settings));
    EXPECT_EQ(run->settings.at("ExtentProvider"), "/in/domain = old.shp");
    EXPECT_EQ(run->settings.at("CellSize"), "250.5");
    EXPECT_TRUE(run->used.empty());
}

TEST_F(StepRecords, ALineEndInASettingDamagesNoNote) {
    settings.ExtentProvider = "/in/a\nmade x\r\n.shp";
    settings.Year = "2006\n";
    StepRecorder(files, settings, "refet").made("RefET_Jun_2");
    const auto run = lastRun(files, "/out", "refet");
    EXPECT_THAT(run->made, testing::ElementsAre("RefET_Jun_2"));
    EXPECT_EQ(run->settings, recordedSettings(settings));  // the run is not old
    EXPECT_EQ(run->settings.at("ExtentProvider"), "/in/a made x  .shp");
}

TEST_F(StepRecords, ARunBeginsItsNoteAnew) {
    StepRecorder(files, settings, "ppt").made("PPT_Jun");
    const std::string first = lastRun(files, "/out", "ppt")->run;
    const StepRecorder second(files, settings, "ppt");
    EXPECT_TRUE(lastRun(files, "/out", "ppt")->made.empty());
    EXPECT_NE(lastRun(files, "/out", "ppt")->run, first);
}

TEST_F(StepRecords, NotesTheRunsThatItReads) {
    const StepRecorder refet(files, settings, "refet");
    const StepRecorder crop(files, settings, "cropet", {"refet", "kc"});
    const auto used = lastRun(files, "/out", "cropet")->used;
    EXPECT_EQ(used.size(), 1U);  // Kc maps have no noted run
    EXPECT_EQ(used.at("refet"), lastRun(files, "/out", "refet")->run);
}

TEST_F(StepRecords, ADamagedNoteIsNoNote) {
    StepRecorder(files, settings, "kc").made("Kc_Jun_2");
    StepRecorder(files, settings, "cropet", {"kc"}).made("ET_Jun_2");
    const std::string path = "/out/velmora_made_cropet.txt";
    const std::string good = files.files.at(path);
    ASSERT_TRUE(lastRun(files, "/out", "cropet"));
    for (const std::string& text :
         {std::string(), good.substr(0, good.size() - 1), good.substr(good.find('\n') + 1),
          good + "made\n", good + "made \n", good + "set Year\n", good + "used kc\n",
          good + "used nowhere=5\n", good + "else 5\n", good + good, std::string("\0\0\n", 3),
          good + "made " + std::string(1'000'000, 'x') + "\n"}) {
        files.files[path] = text;
        EXPECT_THAT([&] { lastRun(files, "/out", "cropet"); },
                    testing::ThrowsMessage<PlatformError>("The note " + path + " is damaged"))
            << text.substr(0, 200);
    }
}

TEST_F(StepRecords, ASourceWithADamagedNoteIsOfAnUnknownRun) {
    files.files["/out/velmora_made_refet.txt"] = "run";
    const StepRecorder crop(files, settings, "cropet", {"refet"});
    EXPECT_EQ(lastRun(files, "/out", "cropet")->used.at("refet"), "unknown");
}

}  // namespace
}  // namespace velmora
