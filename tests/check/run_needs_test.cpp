// SPDX-License-Identifier: MIT
// What a run will take.
#include "check/run_needs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "refet/run_size.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

using testing::HasSubstr;

GridGeometry cellsOf(int columns, int rows) { return {columns, rows, 0, 0, 100, ""}; }

// A year of the chain at 1,000,000 cells and method 2 left 686 MB (docs/performance.md).
TEST(RunNeeds, AreThoseOfTheMeasuredChain) {
    RunSettings settings;
    settings.RefETMethod = "2";
    settings.BeginMonth = "Jan";
    settings.EndMonth = "Dec";
    EXPECT_NEAR(bytesOnDisk(settings, 1000000) / 1048576, 686, 0.05 * 686);
    const double full = bytesOnDisk(settings, 1000000);
    settings.RefETMethod = "4";
    EXPECT_LT(bytesOnDisk(settings, 1000000), 0.9 * full);
}

// What there is no room for with the work database may have it without.
TEST(RunNeeds, AForgoneWorkDatabaseNeedsNoRoom) {
    RunSettings settings;
    settings.RefETMethod = "2";
    settings.BeginMonth = "Jul";
    settings.EndMonth = "Jul";
    settings.OutputWorkspace = "/out";
    test::MemoryFiles files;
    files.room = 40'000'000;  // of 1,000,000 cells: eight grids, 34 MB, and 92 MB of the table
    EXPECT_THROW(requireRoom(files, settings, cellsOf(1000, 1000)), PlatformError);
    EXPECT_NO_THROW(requireRoom(files, settings, cellsOf(1000, 1000), false));
}

TEST(RunNeeds, AreToldInOneNote) {
    test::MemoryRun f;
    test::MemoryFiles files;
    f.settings.BeginMonth = "Jan";
    f.settings.EndMonth = "Dec";
    const auto small = checkRunNeeds(files, f.settings, cellsOf(1000, 1000));
    ASSERT_EQ(small.size(), 1U);
    EXPECT_EQ(small[0].severity, Severity::note);
    EXPECT_EQ(small[0].text, "all steps over 12 months take some 722 MB on disk and some seconds");
    const auto large = checkRunNeeds(files, f.settings, cellsOf(30000, 30000));
    EXPECT_THAT(large[0].text, HasSubstr("648.9 GB on disk and about 72 minutes"));
    files.room.reset();  // not known
    EXPECT_EQ(checkRunNeeds(files, f.settings, cellsOf(30000, 30000)).size(), 1U);
}

TEST(RunNeeds, ADiskWithoutRoomIsAWarning) {
    test::MemoryRun f;
    test::MemoryFiles files;
    files.room = 7'000'000;
    const auto found = checkRunNeeds(files, f.settings, cellsOf(1000, 1000));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[1].severity, Severity::warning);
    EXPECT_THAT(found[1].text, HasSubstr("has 7 MB left on its disk, but all steps take "));
}

}  // namespace
}  // namespace velmora
