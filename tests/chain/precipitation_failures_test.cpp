// SPDX-License-Identifier: MIT
// Precipitation runs that cannot be done: each says what is wrong and takes nothing away.
#include <gdal_priv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "gis/errors.h"
#include "tests/support/run_fixture.h"

namespace velmora {
namespace {

using test::RunFixture;
using test::Station;
using testing::HasSubstr;

struct PrecipitationFailures : testing::Test {
    RunFixture f;
    std::string stationTable;

    PrecipitationFailures() {
        f.makeWeather(RunFixture::stations(), RunFixture::usualWeather, {"P_"});
        stationTable = test::contentOf(f.folder.file("stations.dbf"));
    }
    // Runs, expects a failure that leaves the stations alone, and returns the messages.
    std::string failed() {
        EXPECT_FALSE(f.runPrecipitation());
        EXPECT_EQ(test::contentOf(f.folder.file("stations.dbf")), stationTable);
        for (const auto& entry : std::filesystem::directory_iterator(f.folder.file("out"))) {
            EXPECT_NE(entry.path().filename().string()[0], '.') << entry.path();
        }
        return f.allMessages();
    }
    void rewriteWeather(const test::Weather& weather) {
        f.makeWeather(RunFixture::stations(), weather, {"P_"});
    }
};

TEST_F(PrecipitationFailures, NotSetStationsAndWeather) {
    f.settings.WeatherStations = "";
    f.settings.WeatherData = "";
    EXPECT_EQ(failed(),
              "Using EDK to interpolate precipitation...\n"
              "Please set the Weather Stations Shapefile.\n");
    f.settings.PrecipitationMethod = "PRISM_REF";
    f.settings.WeatherStations = f.folder.file("stations.shp");
    EXPECT_FALSE(f.runPrecipitation());
    EXPECT_EQ(f.application.messages().back(), "Please set the Weather DataTable.");
}

TEST_F(PrecipitationFailures, AnotherMethodDoesNothing) {
    for (const char* method : {"", "edk", "PRISM", "EDK "}) {
        f.settings.PrecipitationMethod = method;
        EXPECT_FALSE(f.runPrecipitation());
        EXPECT_THAT(f.application.prompts().reasons.back(),
                    testing::HasSubstr("choose EDK or PRISM_REF"));
    }
    EXPECT_TRUE(f.application.messages().empty());
    EXPECT_TRUE(std::filesystem::is_empty(f.folder.file("out")));
}

TEST_F(PrecipitationFailures, AMissingOutputFolderIsMade) {
    f.settings.OutputWorkspace = f.folder.file("new");
    EXPECT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_TRUE(std::filesystem::exists(f.folder.file("new/PPT_Jul/hdr.adf")));
    f.settings.OutputWorkspace = f.folder.file("none/new");
    EXPECT_THROW(f.runPrecipitation(), PlatformError);
    EXPECT_FALSE(std::filesystem::exists(f.folder.file("none")));
}

TEST_F(PrecipitationFailures, TwoRunsInOneFolder) {
    const auto other = f.application.platform().files().lockFolder(f.folder.file("out"));
    EXPECT_THROW(f.runPrecipitation(), PlatformError);
}

TEST_F(PrecipitationFailures, MonthWithoutValidStationsKeepsTheEarlierGrids) {
    rewriteWeather([](const std::string& p, const Station& s, int m) -> FieldValue {
        return m == 7 && s.name != "S3" ? FieldValue(0.0) : RunFixture::usualWeather(p, s, m);
    });
    EXPECT_THAT(failed(),
                testing::AllOf(HasSubstr("PPT Calculation for Jun is Over!"),
                               HasSubstr("The surface PPT_Jul (field weather.P_Jul, "
                                         "month Jul) has 1 valid station: a regression on "
                                         "elevation needs at least two; 15 stations hold 0")));
    EXPECT_TRUE(f.hasOutput("PPT_Jun"));
    EXPECT_FALSE(f.hasOutput("PPT_Jul"));
    EXPECT_EQ(f.application.document().layers.size(), 1U);
}

TEST_F(PrecipitationFailures, AMonthOfZerosAndOfNoRainAtAllDiffer) {
    // A number that is no precipitation is not 0 either.
    rewriteWeather([](const std::string& p, const Station& s, int m) -> FieldValue {
        if (m == 7) return s.name == "S3" ? FieldValue(-999.0) : FieldValue(0.0);
        return RunFixture::usualWeather(p, s, m);
    });
    EXPECT_THAT(failed(),
                HasSubstr("has 0 valid stations: a regression on elevation needs at least "
                          "two; 15 stations hold 0"));
    // Nor is a month without any value one without rain.
    rewriteWeather([](const std::string& p, const Station& s, int m) -> FieldValue {
        return m == 7 ? FieldValue() : RunFixture::usualWeather(p, s, m);
    });
    EXPECT_THAT(failed(), testing::EndsWith("needs at least two\n"));
    EXPECT_FALSE(f.hasOutput("PPT_Jul"));
}

TEST_F(PrecipitationFailures, StationsAtOneElevation) {
    auto level = RunFixture::stations();
    for (Station& s : level) s.elevation = 1500.3;
    f.makeStations(level);
    stationTable = test::contentOf(f.folder.file("stations.dbf"));
    EXPECT_THAT(failed(), HasSubstr("stand at one elevation"));
}

TEST_F(PrecipitationFailures, AMonthWithoutItsField) {
    f.makeWeather(RunFixture::stations(), RunFixture::usualWeather, {"TM_"});
    EXPECT_THAT(failed(), HasSubstr("weather.dbf has no field P_Jun"));
    f.settings.PrecipitationMethod = "PRISM_REF";
    EXPECT_THAT(failed(), HasSubstr("weather.dbf has no field P_Jun"));
}

TEST_F(PrecipitationFailures, StationsWithoutElevation) {
    f.application.platform().features().createFeatureClass(
        f.folder.file("stations.shp"), false, f.geometry().crs,
        {{"staname", FieldType::text, 20, 0}}, {{{{400100, 4499000}}, {std::string("S1")}}});
    stationTable = test::contentOf(f.folder.file("stations.dbf"));
    EXPECT_THAT(failed(), HasSubstr("stations.shp has no field ELEVATION"));
}

TEST_F(PrecipitationFailures, AMissingDem) {
    f.settings.DEM = "/none/dem";
    EXPECT_THAT(failed(), HasSubstr("There is no raster dataset /none/dem"));
}

TEST_F(PrecipitationFailures, ADemInFeetIsToldOnce) {
    f.settings.DemUnit = "Feet";
    EXPECT_TRUE(f.runPrecipitation());
    EXPECT_EQ(f.application.messages().size(), 4U);
    EXPECT_THAT(f.application.messages()[1], HasSubstr("is in feet"));
}

TEST_F(PrecipitationFailures, AMissingReferenceGridKeepsTheEarlierGrids) {
    f.settings.PrecipitationMethod = "PRISM_REF";
    f.makeReferenceGrid(6, f.geometry(), [](int, int) { return 3000.0F; });
    EXPECT_THAT(failed(),
                testing::AllOf(HasSubstr("PPT Calculation for Jun is Over!"),
                               HasSubstr("There is no raster dataset"), HasSubstr("ref07"),
                               HasSubstr("ending in the month's two digits")));
    EXPECT_TRUE(f.hasOutput("PPT_Jun"));
    EXPECT_FALSE(f.hasOutput("PPT_Jul"));
}

TEST_F(PrecipitationFailures, NoRatioAtAll) {
    f.settings.PrecipitationMethod = "PRISM_REF";
    f.makeReferenceGrid(6, f.geometry(), [](int, int) { return kNoData; });
    EXPECT_THAT(failed(), testing::AllOf(HasSubstr("PPT_Jun"), HasSubstr("month Jun"),
                                         HasSubstr("has 0 valid stations")));
    f.makeReferenceGrid(6, f.geometry(), [](int, int) { return 0.0F; });
    EXPECT_THAT(failed(), HasSubstr("has 0 valid stations"));
}

TEST_F(PrecipitationFailures, ReferenceGridsThatAreNotNamed) {
    f.settings.PrecipitationMethod = "PRISM_REF";
    f.settings.PrismGridFolder = "";
    EXPECT_THAT(failed(), HasSubstr("The reference precipitation grids are not named"));
}

TEST_F(PrecipitationFailures, AWorkingFieldThatCannotBeStoredIsTold) {
    // The user has a text of that name.
    std::vector<NewFeature> features;
    for (const Station& s : RunFixture::stations()) {
        features.push_back({{{s.x, s.y}}, {s.name, s.elevation, FieldValue()}});
    }
    f.application.platform().features().createFeatureClass(f.folder.file("stations.shp"), false,
                                                           f.geometry().crs,
                                                           {{"staname", FieldType::text, 20, 0},
                                                            {"ELEVATION", FieldType::number, 10, 2},
                                                            {"RefPPT", FieldType::text, 30, 0}},
                                                           features);
    stationTable = test::contentOf(f.folder.file("stations.dbf"));
    EXPECT_TRUE(f.runPrecipitation());
    EXPECT_THAT(f.allMessages(),
                testing::AllOf(HasSubstr("The working field RefPPT is not stored: "),
                               HasSubstr("is no field of numbers")));
    EXPECT_EQ(test::contentOf(f.folder.file("stations.dbf")), stationTable);
    EXPECT_TRUE(f.hasOutput("PPT_Jul"));
}

// The usual width of a single exported by a desktop GIS, in which the table's list of fields holds
// the byte that ends it.
TEST_F(PrecipitationFailures, TheStationsOfAnExportKeepTheirTable) {
    f.makeWeather(RunFixture::stations(), RunFixture::usualWeather);
    std::vector<NewFeature> features;
    for (const Station& s : RunFixture::stations()) {
        features.push_back({{{s.x, s.y}}, {s.name, s.elevation, std::string("kept")}});
    }
    IFeatureWorkspaceFactory& files = f.application.platform().features();
    files.createFeatureClass(f.folder.file("stations.shp"), false, f.geometry().crs,
                             {{"staname", FieldType::text, 12, 0},
                              {"ELEVATION", FieldType::number, 13, 8},
                              {"remark", FieldType::text, 13, 0}},
                             features);
    EXPECT_TRUE(f.run()) << f.allMessages();
    f.makeWeather(RunFixture::stations(), RunFixture::usualWeather, {"P_"});
    EXPECT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_THAT(f.allMessages(), testing::Not(HasSubstr("not stored")));
    const auto table = files.openTable(f.folder.file("stations.dbf"));
    ASSERT_EQ(table->fields().size(), 5U);
    EXPECT_EQ(table->fields()[3].name, "TempTTT");
    EXPECT_EQ(table->fields()[4].name, "RefPPT");
    ASSERT_EQ(table->recordCount(), features.size());
    for (std::size_t r = 0; r < features.size(); ++r) {
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(table->value(r, table->fields()[i].name), features[r].values[i]);
        }
        EXPECT_FALSE(isNull(table->value(r, "RefPPT")));
    }
}

TEST_F(PrecipitationFailures, AGeoPackageOfStationsTouchesNoTableBesideIt) {
    {
        const std::unique_ptr<GDALDataset> stations(GDALDataset::Open(
            f.settings.WeatherStations.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY));
        const std::unique_ptr<GDALDataset> package(
            GetGDALDriverManager()->GetDriverByName("GPKG")->Create(
                f.folder.file("stations.gpkg").c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        ASSERT_TRUE(package);
        ASSERT_TRUE(package->CopyLayer(stations->GetLayer(0), "copied"));
    }
    f.settings.WeatherStations = f.folder.file("stations.gpkg");
    EXPECT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_THAT(f.application.prompts().notices,
                testing::ElementsAre(
                    testing::AllOf(HasSubstr("The working field RefPPT is kept in memory only"),
                                   HasSubstr("stations.gpkg"))));
    EXPECT_EQ(f.application.prompts().failures(), 0U);
    EXPECT_THAT(f.allMessages(), testing::Not(HasSubstr("not stored")));
    EXPECT_EQ(test::contentOf(f.folder.file("stations.dbf")), stationTable);
    EXPECT_TRUE(f.hasOutput("PPT_Jul"));
    f.makeWeather(RunFixture::stations(), RunFixture::usualWeather);
    EXPECT_TRUE(f.run()) << f.allMessages();
    EXPECT_THAT(f.application.prompts().notices,
                testing::Contains(HasSubstr("TempTTT is kept in memory")));
    EXPECT_EQ(test::contentOf(f.folder.file("stations.dbf")), stationTable);
}

}  // namespace
}  // namespace velmora
