// SPDX-License-Identifier: MIT
// Runs that cannot be done: each says what is wrong and takes nothing away.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "gis/errors.h"
#include "platform/files/file_system.h"
#include "settings/run_state.h"
#include "tests/support/run_fixture.h"

namespace velmora {
namespace {

using test::RunFixture;
using test::Station;
using testing::HasSubstr;

struct RefEtFailures : testing::Test {
    RunFixture f;
    // Runs, expects a failure, and returns the messages.
    std::string failed() {
        EXPECT_FALSE(f.run());
        EXPECT_FALSE(processState().runStatus);
        EXPECT_FALSE(f.application.messages().empty());
        return f.allMessages();
    }
    void expectNothingUnfinished() {
        for (const auto& entry : std::filesystem::directory_iterator(f.folder.file("out"))) {
            EXPECT_NE(entry.path().filename().string()[0], '.') << entry.path();
        }
    }
};

TEST_F(RefEtFailures, MissingDem) {
    f.settings.DEM = "/none/dem";
    EXPECT_THAT(failed(),
                HasSubstr("Error in 'GetRasterTemp': There is no raster dataset /none/dem"));
    expectNothingUnfinished();
}

TEST_F(RefEtFailures, WhatAFailedRunHasMadeIsSettled) {
    f.makeWeather(RunFixture::stations(),
                  [](const std::string& p, const Station& s, int m) -> FieldValue {
                      if (p == "TM_" && m == 7) return FieldValue();
                      return RunFixture::usualWeather(p, s, m);
                  });
    struct SettledFiles : platform::FileSystem {
        void settle(const std::string& folder) override {
            sizes.push_back(std::filesystem::file_size(folder + "/GridOP.mdb"));
        }
        std::vector<std::uintmax_t> sizes;
    } files;
    f.world.platform.otherFiles = &files;
    failed();
    f.world.platform.otherFiles = nullptr;
    ASSERT_EQ(files.sizes.size(), 1U);
    EXPECT_GT(files.sizes.front(), 8U * 2U * static_cast<std::uintmax_t>(f.geometry().cells()));
}

TEST_F(RefEtFailures, WhatTheRunEstimatesIsToldOnce) {
    f.makeDem([](int, int) { return 1500.0F; });  // within the stations' range
    f.settings.RefETMethod = "2";
    f.settings.HasTdew = f.settings.HasSR = f.settings.HasWS = true;
    ASSERT_TRUE(f.run()) << f.allMessages();
    EXPECT_THAT(f.application.prompts().notices, testing::IsEmpty());
    f.settings.HasTdew = f.settings.HasSR = false;
    ASSERT_TRUE(f.run()) << f.allMessages();
    EXPECT_THAT(f.application.prompts().notices,
                testing::ElementsAre("The run has no dew point (TD_...) for Jun, Jul: it is "
                                     "estimated from minimum temperatures and Ko",
                                     "The run has no solar radiation (SR_...) for Jun, Jul: it is "
                                     "estimated from the daily range of temperature and Ks"));
    f.application.prompts().notices.clear();
    f.settings.RefETMethod = "4";
    ASSERT_TRUE(f.run()) << f.allMessages();
    EXPECT_THAT(f.application.prompts().notices, testing::IsEmpty());
}

TEST_F(RefEtFailures, StationsWithoutElevation) {
    f.application.platform().features().createFeatureClass(
        f.folder.file("stations.shp"), false, f.geometry().crs,
        {{"staname", FieldType::text, 20, 0}}, {{{{400100, 4499000}}, {std::string("S1")}}});
    EXPECT_THAT(failed(), HasSubstr("stations.shp has no field ELEVATION"));
}

TEST_F(RefEtFailures, WeatherWithoutStn) {
    f.application.platform().features().createTable(
        f.folder.file("weather.dbf"),
        {{"STATION", FieldType::text, 20, 0}, {"TM_Jun", FieldType::number, 8, 2}},
        {{std::string("S1"), 20.0}});
    EXPECT_THAT(failed(), HasSubstr("weather.dbf has no field STN (its fields: STATION, TM_Jun)"));
}

TEST_F(RefEtFailures, NoCommonKeys) {
    auto others = RunFixture::stations();
    for (Station& s : others) s.name = "X" + s.name;
    f.makeWeather(others, RunFixture::usualWeather);
    EXPECT_THAT(failed(), testing::AllOf(HasSubstr("No station of"), HasSubstr("\"S0\""),
                                         HasSubstr("\"XS0\"")));
}

TEST_F(RefEtFailures, NotSetStationsAndWeather) {
    f.settings.WeatherStations = "";
    EXPECT_THAT(failed(), HasSubstr("Please set the Weather Stations Shapefile."));
    f.settings.WeatherStations = f.folder.file("stations.shp");
    f.settings.WeatherData = "";
    EXPECT_THAT(failed(), HasSubstr("Please set the Weather DataTable."));
}

TEST_F(RefEtFailures, StationsWithoutCrsAreTakenToBeInTheDomains) {
    f.makeStations(RunFixture::stations(), false);
    EXPECT_TRUE(f.run()) << f.allMessages();
}

TEST_F(RefEtFailures, ExtentInDegrees) {
    f.makeDomain({-112, 40, -111, 41},
                 f.application.platform().spatialReferences().createGeographic(4269));
    EXPECT_THAT(failed(), HasSubstr("is in degrees"));
}

TEST_F(RefEtFailures, AbsurdCellSizes) {
    f.settings.CellSize = 0;
    EXPECT_THAT(failed(), HasSubstr("The cell size is 0"));
    f.settings.CellSize = -30;
    EXPECT_THAT(failed(), HasSubstr("The cell size is -30"));
    f.settings.CellSize = 1e-3;
    EXPECT_THAT(failed(), HasSubstr("more than a grid can hold"));
    f.settings.CellSize = 15000;
    EXPECT_TRUE(f.run()) << f.allMessages();  // one cell
    EXPECT_EQ(f.output("RefET_Jul_2").values.size(), 1U);
}

// What would be left of an earlier run is of other cells.
TEST_F(RefEtFailures, WithoutAWorkDatabaseThereIsNone) {
    ASSERT_TRUE(f.run()) << f.allMessages();
    ASSERT_TRUE(std::filesystem::exists(f.folder.file("out/GridOP.mdb")));
    const auto with = f.output("RefET_Jul_2").values;
    f.application.askForWorkDatabase = false;
    ASSERT_TRUE(f.run()) << f.allMessages();
    EXPECT_FALSE(std::filesystem::exists(f.folder.file("out/GridOP.mdb")));
    EXPECT_EQ(f.output("RefET_Jul_2").values, with);
}

TEST_F(RefEtFailures, NotEnoughRoomOnTheDisk) {
    class FullDisk : public platform::FileSystem {
      public:
        std::optional<std::uint64_t> freeSpace(const std::string&) const override { return 1000; }
    } full;
    f.world.platform.otherFiles = &full;
    EXPECT_THAT(failed(), HasSubstr("has 1 MB left: make room, or give a larger cell size"));
}

TEST_F(RefEtFailures, OutputFolder) {
    f.settings.OutputWorkspace = f.folder.file("none");
    EXPECT_THAT(failed(), HasSubstr("does not exist"));
    f.settings.OutputWorkspace = "/proc";
    EXPECT_THAT(failed(), HasSubstr("Cannot write in the folder"));
}

TEST_F(RefEtFailures, TwoRunsInOneFolder) {
    const auto other = f.application.platform().files().lockFolder(f.folder.file("out"));
    EXPECT_THAT(failed(), HasSubstr("Another run is working in"));
    EXPECT_FALSE(f.hasOutput("RsTemplate"));
}

TEST_F(RefEtFailures, MonthWithoutValidStationsKeepsTheEarlierGrids) {
    f.makeWeather(RunFixture::stations(),
                  [](const std::string& p, const Station& s, int m) -> FieldValue {
                      if (p == "TM_" && m == 7 && s.name != "S4") return 100.0;
                      return RunFixture::usualWeather(p, s, m);
                  });
    EXPECT_THAT(
        failed(),
        testing::AllOf(HasSubstr("TM_Jul"), HasSubstr("month Jul"),
                       HasSubstr("1 valid station: a regression on elevation needs at least two")));
    EXPECT_TRUE(f.hasOutput("TM_Jun"));
    EXPECT_FALSE(f.hasOutput("TM_Jul"));
    EXPECT_FALSE(f.hasOutput("RefET_Jun_2"));
    expectNothingUnfinished();
}

TEST_F(RefEtFailures, NoWindAtAll) {
    f.makeWeather(RunFixture::stations(),
                  [](const std::string& p, const Station& s, int m) -> FieldValue {
                      return p == "WS_" ? FieldValue(0.0) : RunFixture::usualWeather(p, s, m);
                  });
    EXPECT_THAT(failed(), testing::AllOf(HasSubstr("WS_Jun"), HasSubstr("0 valid stations")));
}

TEST_F(RefEtFailures, StationsAtOneElevation) {
    auto level = RunFixture::stations();
    for (Station& s : level) s.elevation = 1500;
    f.makeStations(level);
    EXPECT_THAT(failed(), HasSubstr("at one elevation"));
}

TEST_F(RefEtFailures, ANeighbourOutsideTheRunOnlyCountsAsMissing) {
    f.makeWeather(RunFixture::stations(),
                  [](const std::string& p, const Station& s, int m) -> FieldValue {
                      if (p == "TM_" && m == 8) return FieldValue();
                      return RunFixture::usualWeather(p, s, m);
                  });
    EXPECT_TRUE(f.run()) << f.allMessages();
    EXPECT_THAT(f.allMessages(), HasSubstr("soil heat flux of Jul is taken as 0"));
    EXPECT_EQ(f.application.messages().size(), 2U);
}

TEST_F(RefEtFailures, DemOutsideTheDomain) {
    f.makeDomain({900000, 4500000, 910000, 4510000}, f.geometry().crs);
    EXPECT_THAT(failed(), HasSubstr("has no data within the modelling extent"));
}

TEST_F(RefEtFailures, AnEquationThatFailsStopsBeforeItsGrid) {
    // Far north in December there is no sunrise.
    GridGeometry north = f.geometry();
    f.makeDomain({400000, 9200000, 414800, 9208400}, north.crs);
    f.settings.DEM = f.folder.file("north.asc");
    test::write(
        f.settings.DEM,
        "ncols 2\nnrows 2\nxllcorner 390000\nyllcorner 9190000\ncellsize 20000\n10 20\n30 40\n");
    f.settings.BeginMonth = f.settings.EndMonth = "Dec";
    f.settings.RefETMethod = "4";
    EXPECT_THAT(failed(), HasSubstr("Error found in RefET calculation module"));
    EXPECT_THAT(f.monitor.statuses, testing::Contains(HasSubstr("no sunrise or sunset")));
    EXPECT_FALSE(f.hasOutput("RefET_Dec_4"));
    EXPECT_TRUE(std::filesystem::exists(f.folder.file("out/GridOP.mdb")));
    f.settings.RefETMethod = "5";
    EXPECT_TRUE(f.run());
    EXPECT_THAT(f.allMessages(), HasSubstr("Error in SCS-BC (777 cells in Dec)"));
    EXPECT_EQ(f.output("RefET_Dec_5").values[0], 0);
}

TEST_F(RefEtFailures, AMethodThatIsNone) {
    f.settings.RefETMethod = "x";
    EXPECT_THAT(failed(), HasSubstr("\"x\" is no reference ET method"));
}

TEST_F(RefEtFailures, MonthZeroIsSkipped) {
    f.settings.BeginMonth = "nonsense";
    f.settings.EndMonth = "Feb";
    EXPECT_TRUE(f.run()) << f.allMessages();
    EXPECT_TRUE(f.hasOutput("RefET_Jan_2"));
    EXPECT_TRUE(f.hasOutput("RefET_Feb_2"));
}

TEST_F(RefEtFailures, APeriodWithoutMonthsMakesNothing) {
    f.settings.EndMonth = "nonsense";
    EXPECT_TRUE(f.run()) << f.allMessages();
    EXPECT_FALSE(f.hasOutput("TM_Jan"));
    EXPECT_FALSE(f.hasOutput("RefET_Jun_2"));
}

TEST_F(RefEtFailures, AStationFileThatCannotBeChangedDoesNotStopTheRun) {
    // A field of that name is there, too narrow for its values.
    std::vector<NewFeature> features;
    for (const Station& s : RunFixture::stations()) {
        features.push_back({{{s.x, s.y}}, {s.name, s.elevation, 1.0}});
    }
    f.application.platform().features().createFeatureClass(f.folder.file("stations.shp"), false,
                                                           f.geometry().crs,
                                                           {{"staname", FieldType::text, 20, 0},
                                                            {"ELEVATION", FieldType::number, 10, 2},
                                                            {"TempTTT", FieldType::number, 1, 0}},
                                                           features);
    EXPECT_TRUE(f.run()) << f.allMessages();
    EXPECT_THAT(f.allMessages(), HasSubstr("The working field TempTTT is not stored"));
}

}  // namespace
}  // namespace velmora
