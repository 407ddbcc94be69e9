// SPDX-License-Identifier: MIT
// Grids that are left from earlier runs are told before a step reads them.
#include "modelling/old_results.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>

#include "check/input_check.h"
#include "gis/errors.h"
#include "irrigation/irrigation_requirement_run.h"
#include "irrigation/net_irrigation_run.h"
#include "platform/files/file_system.h"
#include "platform/grid/gdal_raster.h"
#include "tests/support/irrigation_fixture.h"

namespace velmora {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct OldResults : testing::Test {
    mutable test::IrrigationFixture f;

    std::vector<std::string> old(const std::string& step) {
        return oldInputs(f.application.platform(), f.settings, step);
    }
    // What was told, but for zone keys that the tables cut.
    std::vector<std::string> told() const {
        std::vector<std::string> notices = f.application.prompts().notices;
        std::erase_if(notices, [](const std::string& text) {
            return text.find("zone key") != std::string::npos;
        });
        return notices;
    }
    // Moves the time of a grid of the output folder.
    void age(const std::string& grid, std::chrono::hours by) {
        const std::filesystem::path values = f.folder.file("out/" + grid + "/w001001.adf");
        std::filesystem::last_write_time(values, std::filesystem::last_write_time(values) + by);
    }
};

TEST_F(OldResults, GridsOfTheLastRunsAreGood) {
    ASSERT_TRUE(f.run()) << f.allMessages();
    f.save("Kc_Jun", f.filled(0.9F));
    f.save("Kc_Jul", f.filled(0.9F));
    EXPECT_THAT(old("cropet"), IsEmpty());
    f.application.prompts().notices.clear();  // of reference ET
    ASSERT_TRUE(f.runCropEt()) << f.allMessages();
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_THAT(old("nir"), IsEmpty());
}

TEST_F(OldResults, AMonthThatFailedIsToldByTheStepThatReadsIt) {
    ASSERT_TRUE(f.run());
    f.makeWeather(test::RunFixture::stations(),
                  [](const std::string& p, const test::Station& s, int m) -> FieldValue {
                      if (p == "TM_" && m == 7) return FieldValue();
                      return test::RunFixture::usualWeather(p, s, m);
                  });
    ASSERT_FALSE(f.run());
    f.save("Kc_Jun", f.filled(0.9F));
    f.save("Kc_Jul", f.filled(0.9F));
    f.application.prompts().notices.clear();
    ASSERT_TRUE(f.runCropEt()) << f.allMessages();
    EXPECT_THAT(told(), ElementsAre(AllOf(HasSubstr("RefET_Jun_4, RefET_Jul_4"),
                                          HasSubstr("not made by the last run of reference ET"))));
}

TEST_F(OldResults, AShorterPeriodAndOtherCellsAreTold) {
    ASSERT_TRUE(f.run());
    f.settings.BeginMonth = "Jul";
    f.settings.CellSize = 800;
    ASSERT_TRUE(f.run());
    EXPECT_THAT(old("cropet"), IsEmpty());
    f.settings.BeginMonth = "Jun";
    EXPECT_THAT(old("cropet"), ElementsAre(AllOf(HasSubstr("RefET_Jun_4:"), HasSubstr("earlier"))));
    f.settings.BeginMonth = "Jul";
    f.settings.CellSize = 400;
    f.settings.Year = "2007";
    EXPECT_THAT(old("cropet"), ElementsAre(HasSubstr("CellSize=800, and the settings now say 400"),
                                           HasSubstr("Year=2006, and the settings now say 2007")));
}

TEST_F(OldResults, TheCheckOfTheInputsTellsThemOnce) {
    ASSERT_TRUE(f.run());
    f.save("Kc_Jun", f.filled(0.9F));
    f.save("Kc_Jul", f.filled(0.9F));
    ASSERT_TRUE(f.runCropEt());
    f.settings.BeginMonth = "Jul";
    ASSERT_TRUE(f.runCropEt());
    f.settings.BeginMonth = "Jun";
    std::vector<std::string> found;
    for (const Finding& finding : checkInputs(f.application.platform(), f.settings)) {
        if (finding.file != f.settings.OutputWorkspace) continue;
        if (finding.severity == Severity::note) continue;  // what is still to be made
        EXPECT_EQ(finding.severity, Severity::warning);
        found.push_back(finding.text);
    }
    EXPECT_THAT(found, ElementsAre("ET_Jun_4: not made by the last run of crop ET, but left from "
                                   "an earlier one"));
}

TEST_F(OldResults, ARunOfAnEarlierStepMakesTheLaterOnesOld) {
    ASSERT_TRUE(f.run());
    f.save("Kc_Jun", f.filled(0.9F));
    f.save("Kc_Jul", f.filled(0.9F));
    ASSERT_TRUE(f.runCropEt());
    ASSERT_TRUE(f.run());
    EXPECT_THAT(old("cropet"), IsEmpty());
    EXPECT_THAT(old("nir"), ElementsAre("The last run of crop ET read reference ET of an earlier "
                                        "run than the last"));
}

TEST_F(OldResults, ACopyOlderThanAnotherSourceIsTold) {
    f.save("Kc_Jul_4", f.filled(1.0F));
    f.save("Kc_Jul", f.filled(0.5F));
    f.save("IREF", f.filled(0.7F));
    f.save("faef_500", f.filled(0.6F));
    EXPECT_THAT(old("cropet"), IsEmpty());  // younger: the user's own
    age("Kc_Jul", std::chrono::hours(-1));
    age("faef_500", std::chrono::hours(-1));
    EXPECT_THAT(old("cropet"), ElementsAre("Kc_Jul is older than Kc_Jul_4 and differs from it: "
                                           "velmora grid copy Kc_Jul_4 Kc_Jul renews it"));
    EXPECT_THAT(old("irr"), ElementsAre(HasSubstr("faef_500 is older than IREF")));
    f.save("Kc_Jul", f.filled(1.0F));
    age("Kc_Jul", std::chrono::hours(-1));
    EXPECT_THAT(old("cropet"), IsEmpty());  // older, but the same
}

TEST_F(OldResults, ANoteThatCannotBeReadIsTold) {
    ASSERT_TRUE(f.run());
    f.save("Kc_Jun", f.filled(0.9F));
    f.save("Kc_Jul", f.filled(0.9F));
    const std::string note = f.folder.file("out/velmora_made_refet.txt");
    test::write(note, "run 1\nset CellSize");
    const std::string damaged = "The note " + note +
                                " is damaged: it cannot be told what the last run of reference ET "
                                "made; run that step again";
    EXPECT_THAT(old("cropet"), ElementsAre(damaged));
    f.application.prompts().notices.clear();
    ASSERT_TRUE(f.runCropEt()) << f.allMessages();  // tells it and goes on
    EXPECT_THAT(told(), ElementsAre(damaged));
    EXPECT_THAT(old("nir"), ElementsAre(damaged));
    ASSERT_TRUE(f.run());
    EXPECT_THAT(old("nir"), ElementsAre("The last run of crop ET read reference ET of an earlier "
                                        "run than the last"));

    struct NoReading : platform::FileSystem {
        std::string readBeginning(const std::string& path, std::size_t) const override {
            throw PlatformError("Cannot read " + path + ": Input/output error");
        }
    } files;
    f.world.platform.otherFiles = &files;
    EXPECT_THAT(old("cropet"), ElementsAre(HasSubstr("velmora_made_refet.txt: Input/output error: "
                                                     "it cannot be told what")));
    f.world.platform.otherFiles = nullptr;
}

TEST_F(OldResults, AGridThatCannotBeReadHidesNothingElse) {
    f.save("Kc_Jul_4", f.filled(1.0F));
    f.save("Kc_Jun_4", f.filled(1.0F));
    f.save("Kc_Jun", f.filled(0.5F));
    f.save("Kc_Jul", f.filled(0.5F));
    age("Kc_Jul", std::chrono::hours(-1));
    test::write(f.folder.file("out/Kc_Jun/hdr.adf"), "short");
    EXPECT_THAT(old("cropet"), ElementsAre(HasSubstr("Kc_Jul is older than Kc_Jul_4")));
}

TEST_F(OldResults, ARasterFileBesideTheGridThatIsReadIsTold) {
    f.settings.RefETMethod = "4";
    f.saveMonths(6, 7);
    f.save("faef_500", f.filled(0.8F));
    const std::string grid = f.folder.file("out/faef_500");
    platform::exportGeoTiff(*f.filled(0.8F), grid + ".tif");
    const auto run = [&] {
        f.application.prompts().notices.clear();
        EXPECT_TRUE(runIrrigationRequirement(f.application, f.settings)) << f.allMessages();
        return told();
    };
    EXPECT_THAT(run(), IsEmpty());  // the same values
    platform::exportGeoTiff(*f.filled(0.5F), grid + ".tif");
    const std::string text = grid + " is read, and not " + grid +
                             ".tif of the same name, which differs from it: delete or rename the "
                             "one that is not meant";
    EXPECT_THAT(run(), ElementsAre(text));
    EXPECT_THAT(old("irr"), IsEmpty());  // no reason to stop
    int found = 0;
    for (const Finding& finding : checkInputs(f.application.platform(), f.settings)) {
        found += finding.text == text && finding.severity == Severity::warning;
    }
    EXPECT_EQ(found, 1);
    std::filesystem::remove_all(grid);
    EXPECT_THAT(run(), IsEmpty());  // the file alone is read
}

TEST_F(OldResults, ARasterFileBesideTheDemOrAReferenceGridIsTold) {
    f.makeWeather(test::RunFixture::stations(), test::RunFixture::usualWeather,
                  {"TM_", "TN_", "TD_", "SR_", "WS_", "P_"});
    for (const int month : {6, 7}) {
        f.makeReferenceGrid(month, f.geometry(), [](int, int) { return 2540.0F; });
    }
    const auto textOf = [&](const std::string& grid) {
        platform::exportGeoTiff(*f.filled(0.8F), f.folder.file(grid + ".tif"));
        return f.folder.file(grid) + " is read, and not " + f.folder.file(grid) +
               ".tif of the same name, which differs from it: delete or rename the one that is not "
               "meant";
    };
    const std::string dem = textOf("dem");
    const std::string july = textOf("ref07");
    ASSERT_TRUE(f.run()) << f.allMessages();
    EXPECT_EQ(std::ranges::count(told(), dem), 1);
    f.application.prompts().notices.clear();
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_EQ(std::ranges::count(told(), dem), 1);
    f.application.prompts().notices.clear();
    f.settings.PrecipitationMethod = "PRISM_REF";
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_EQ(std::ranges::count(told(), july), 1);
    std::vector<std::string> warned;
    for (const Finding& finding : checkInputs(f.application.platform(), f.settings)) {
        if (finding.severity == Severity::warning) warned.push_back(finding.text);
    }
    EXPECT_EQ(std::ranges::count(warned, dem), 1);
    EXPECT_EQ(std::ranges::count(warned, july), 1);
}

TEST_F(OldResults, GridsWithoutANoteAreTheUsersOwn) {
    f.settings.RefETMethod = "4";
    f.saveMonths(6, 7);
    EXPECT_THAT(old("nir"), IsEmpty());
    ASSERT_TRUE(runNetIrrigation(f.application, f.settings)) << f.allMessages();
    EXPECT_THAT(told(), IsEmpty());
    f.settings.OutputWorkspace = f.folder.file("none");
    EXPECT_THAT(old("nir"), IsEmpty());
}

}  // namespace
}  // namespace velmora
