// SPDX-License-Identifier: MIT
#include "check/input_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

struct InputCheck : testing::Test {
    test::MemoryRun f;
    std::vector<std::string> lines() {
        std::vector<std::string> all;
        for (const Finding& finding : checkInputs(f.application.platform(), f.settings)) {
            all.push_back(findingLine(finding));
        }
        return all;
    }
};

TEST_F(InputCheck, GoodInputsHaveNoErrors) {
    f.makeWeather(f.stations(), test::MemoryRun::usualWeather,
                  {"TM_", "TN_", "TD_", "SR_", "WS_", "P_"});
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("error"))));
    EXPECT_THAT(lines(), Contains(HasSubstr("37 x 21 cells of 400 m")));
}

TEST_F(InputCheck, MissingFilesAreNamed) {
    f.settings.DEM = "/none/dem";
    f.settings.WeatherStations = "/none/stations.shp";
    f.settings.WeatherData = "/none/w.dbf";
    f.settings.Zones = "/none/zones.shp";
    const auto all = lines();
    for (const char* path : {"/none/dem", "/none/stations.shp", "/none/w.dbf", "/none/zones.shp"}) {
        EXPECT_THAT(all, Contains(HasSubstr(std::string("error: ") + path)));
    }
}

TEST_F(InputCheck, OddValuesNameFieldAndStation) {
    f.makeWeather(f.stations(),
                  [](const std::string& p, const test::Station& s, int m) -> FieldValue {
                      if (p == "TD_" && s.name == "S3" && m == 6) return 25.0;
                      if (p == "TM_" && s.name == "S4" && m == 7) return 99.0;
                      if (p == "WS_" && s.name == "S5" && m == 7) return FieldValue();
                      return test::MemoryRun::usualWeather(p, s, m);
                  });
    const auto all = lines();
    EXPECT_THAT(all, Contains(HasSubstr("TD_Jun: S3: 25 > TN_Jun")));
    EXPECT_THAT(all, Contains(HasSubstr("TM_Jul: S4: 99 is not between -20 and 80")));
    EXPECT_THAT(all, Contains(HasSubstr("WS_Jul: S5: has no value")));
}

// As a table of comma-separated values reads.
TEST_F(InputCheck, TextWhereNumbersBelong) {
    f.settings.WeatherData = f.folder.file("texts.dbf");
    f.application.platform().features().createTable(
        f.settings.WeatherData,
        {{"STN", FieldType::text, 20, 0}, {"TM_Jun", FieldType::text, 10, 0}},
        {{std::string("S1"), std::string("-2.16")}, {std::string("S2"), FieldValue()}});
    EXPECT_THAT(lines(), Contains("error: " + f.settings.WeatherData +
                                  ": TM_Jun: S1: holds the text \"-2.16\", but it should be a "
                                  "number: make the field a numeric one"));
    EXPECT_THAT(lines(),
                Contains("note: " + f.settings.WeatherData + ": TM_Jun: S2: has no value"));
}

TEST_F(InputCheck, MissingFieldsAndKeys) {
    f.makeWeather(f.stations(), test::MemoryRun::usualWeather, {"TM_", "SR_"});
    EXPECT_THAT(lines(), Contains(HasSubstr("TN_Jun: the field is missing")));
    auto others = f.stations();
    for (auto& s : others) s.name = "other " + s.name;
    f.makeWeather(others, test::MemoryRun::usualWeather);
    EXPECT_THAT(lines(), Contains(HasSubstr("no record belongs to a station")));
}

TEST_F(InputCheck, FarAndCoincidentStationsAndNoCrs) {
    auto stations = f.stations();
    stations[1].x += 90000;
    stations[3].x = stations[2].x;
    stations[3].y = stations[2].y;
    f.makeStations(stations, false);
    const auto all = lines();
    EXPECT_THAT(all, Contains(HasSubstr("S1: lies")));
    EXPECT_THAT(all, Contains(HasSubstr("S3: stands at the place of S2")));
    EXPECT_THAT(all, Contains(HasSubstr("stations.shp: has no coordinate system")));
}

TEST_F(InputCheck, SettingsOfTheRun) {
    f.settings.RefETMethod = "9";
    f.settings.EndMonth = "xyz";
    f.settings.Year = "now";
    f.settings.CellSize = 0;
    f.settings.OutputWorkspace = "/none/out";
    const auto all = lines();
    EXPECT_THAT(all, Contains(HasSubstr("\"9\" is not 1 to 6")));
    EXPECT_THAT(all, Contains(HasSubstr("holds no month")));
    EXPECT_THAT(all, Contains(HasSubstr("\"now\" is no year")));
    EXPECT_THAT(all, Contains(HasSubstr("The cell size is 0")));
    EXPECT_THAT(all, Contains(HasSubstr("error: /none/out: ")));
}

// The grid covers whole cells, so that it is larger than the degrees.
TEST_F(InputCheck, AnExtentOfDegreesThatSaysMetres) {
    f.makeDomain({-112, 42, -111, 43}, f.geometry().crs);
    EXPECT_THAT(lines(), Contains(HasSubstr("warning: " + f.settings.ExtentProvider +
                                            ": the modelling extent is 400 x 400 m: are its "
                                            "coordinates degrees")));
    f.settings.CellSize = 0.01;
    EXPECT_THAT(lines(), Contains(HasSubstr("m: are its coordinates degrees")));
    f.makeDomain({400000, 4491600, 414800, 4500000}, f.geometry().crs);
    f.settings.CellSize = 400;
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("are its coordinates degrees"))));
    f.makeDomain({400000, 4491600, 414800, 4500000}, "degrees 4269");
    EXPECT_THAT(lines(), Contains(HasSubstr("error: ExtentProvider, CellSize: ")));
    f.makeDomain({400000, 4491600, 414800, 4500000}, "feet 3566");
    EXPECT_THAT(lines(), Contains(HasSubstr("is in units of 0.3048")));
}

TEST_F(InputCheck, ADemInTheWrongUnit) {
    f.makeDem([](int, int) { return 12000.0F; });
    EXPECT_THAT(lines(), Contains(HasSubstr("is the DEM unit right (Meters)?")));
    f.settings.DemUnit = "Feet";
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("is the DEM unit right"))));
}

TEST_F(InputCheck, UnknownMonthsAndUnits) {
    f.settings.BeginMonth = "jun";
    f.settings.DemUnit = "feet";
    f.settings.SiteElevationUnit = "metres";
    f.settings.TemperatureUnit = "degree f";
    const auto all = lines();
    EXPECT_THAT(all, Contains("warning: BeginMonth: \"jun\" is none of Jan to Dec: the run begins "
                              "in January"));
    EXPECT_THAT(all, Contains("warning: DemUnit: \"feet\" is neither Meters nor Feet: it is taken "
                              "as Meters"));
    EXPECT_THAT(all, Contains(HasSubstr("warning: SiteElevationUnit: \"metres\" is neither")));
    EXPECT_THAT(all, Contains(HasSubstr("it is taken as Degree C")));
}

TEST_F(InputCheck, FlagsAgainstTheTable) {
    const std::string table = "warning: " + f.folder.file("weather.dbf") + ": ";
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("the settings say"))));
    f.settings.HasSR = false;
    f.settings.HasTmean = true;
    EXPECT_THAT(lines(), Contains(testing::StartsWith(
                             table + "SR_...: the settings say that the table lacks solar "
                                     "radiation, but it has SR_Jan: let the table be inspected")));
    EXPECT_THAT(
        lines(),
        Contains(testing::StartsWith(table + "TA_...: the settings say that the table holds mean "
                                             "temperature, but it has no field TA_Jan to TA_Dec")));
    std::size_t count = 0;
    for (const std::string& line : lines()) {
        if (line.find("the settings say") != std::string::npos) ++count;
    }
    EXPECT_EQ(count, 2U);          // one a quantity
    f.settings.RefETMethod = "4";  // takes no radiation
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("lacks solar radiation"))));
}

TEST_F(InputCheck, FieldsInSmallLetters) {
    f.makeWeather(f.stations(),
                  [](const std::string& p, const test::Station& s, int m) {
                      return test::MemoryRun::usualWeather(p == "sr_" ? "SR_" : p, s, m);
                  },
                  {"TM_", "TN_", "TD_", "sr_", "WS_", "RHM_"});
    f.settings.HasSR = false;
    EXPECT_THAT(lines(),
                Contains("warning: " + f.folder.file("weather.dbf") +
                         ": SR_...: the table has sr_Jan, but the settings take solar radiation as "
                         "missing: spell the names of its fields with SR_ in capitals"));
    EXPECT_THAT(lines(), Contains(testing::StartsWith("note: " + f.folder.file("weather.dbf") +
                                                      ": RHM_Jan: relative humidity is not used")));
}

TEST_F(InputCheck, ElevationUnitsAgainstTheDem) {
    auto stations = f.stations();
    const auto place = [&](double unit) {  // stations that stand on the DEM of the fixture
        for (auto& s : stations) {
            const double column = std::floor((s.x - 400000) / 400);
            const double row = std::floor((4500000 - s.y) / 400);
            s.elevation = (1300 + 31 * column + 17 * row) / unit;
        }
        f.makeStations(stations);
    };
    place(1);
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("the stations lie"))));
    f.settings.SiteElevationUnit = "Feet";
    EXPECT_THAT(
        lines(),
        Contains(testing::AllOf(
            testing::StartsWith("warning: " + f.folder.file("stations.shp") + ": ELEVATION"),
            HasSubstr(" m below the DEM "),
            testing::EndsWith("agree with SiteElevationUnit=Meters or DemUnit=Feet"))));
    f.settings.SiteElevationUnit = "Meters";
    f.settings.DemUnit = "Feet";
    EXPECT_THAT(lines(), Contains(testing::AllOf(
                             HasSubstr(" m above the DEM "),
                             testing::EndsWith("with SiteElevationUnit=Feet or DemUnit=Meters"))));
    f.settings.DemUnit = "Meters";
    place(0.3048);
    EXPECT_THAT(lines(), Contains(testing::EndsWith("agree with SiteElevationUnit=Feet")));
    place(0.5);
    EXPECT_THAT(lines(), Contains(testing::AllOf(testing::StartsWith("warning: "),
                                                 HasSubstr("compare their coordinates"))));
}

TEST_F(InputCheck, PrecipitationOfTheStations) {
    f.makeWeather(f.stations(),
                  [](const std::string& p, const test::Station& s, int m) -> FieldValue {
                      if (p == "P_" && s.name == "S3" && m == 6) return 0.0;
                      if (p == "P_" && s.name == "S4" && m == 7) return 93.0;  // millimetres
                      return test::MemoryRun::usualWeather(p, s, m);
                  },
                  {"TM_", "TN_", "P_"});
    EXPECT_THAT(lines(), Contains(HasSubstr("P_Jun: S3: 0 is not between 0 and 1000")));
    EXPECT_THAT(lines(), Contains(HasSubstr("P_Jul: S4: 93 is not likely in inches per month")));
    f.settings.DemUnit = "Feet";
    EXPECT_THAT(lines(), Contains(HasSubstr("precipitation takes its elevations as metres")));
    f.makeWeather(f.stations(), test::MemoryRun::usualWeather);
    EXPECT_THAT(lines(), Contains(HasSubstr("error: " + f.folder.file("weather.dbf") +
                                            ": P_Jun: the field is missing")));
    f.settings.PrecipitationMethod = "prism";
    EXPECT_THAT(lines(), Contains(HasSubstr("\"prism\" is neither EDK nor PRISM_REF")));
}

TEST_F(InputCheck, ReferenceGridsOfEveryMonth) {
    f.settings.PrecipitationMethod = "PRISM_REF";
    GridGeometry west = f.geometry();
    west.columns = 20;
    f.makeReferenceGrid(6, west, [](int, int) { return 2000.0F; });
    EXPECT_THAT(lines(), Contains(HasSubstr("error: PrismGridFolder: There is no raster dataset " +
                                            f.folder.file("ref07"))));
    std::string eastern;
    for (const auto& s : f.stations()) {
        if (s.x > west.extent().xMax) eastern = s.name;
    }
    EXPECT_THAT(lines(), Contains("note: " + f.folder.file("ref06") + ": " + eastern +
                                  ": has no value here, so the station takes no part"));
    auto& features = f.application.platform().features();
    const auto session = features.edit(features.openFeatureClass(f.settings.WeatherStations));
    session->addNumericField("RefPPT");
    for (std::size_t s = 0; s < f.stations().size(); ++s) session->setValue(s, "RefPPT", 0.4);
    session->save();
    EXPECT_THAT(lines(), Contains(testing::AllOf(HasSubstr("warning: "), HasSubstr(eastern),
                                                 HasSubstr("holds from an earlier run"))));
    f.settings.PrismGridFolder = "";
    EXPECT_THAT(lines(), Contains(HasSubstr("reference precipitation grids are not named")));
}

TEST_F(InputCheck, ZoneKeys) {
    const std::string longName = "North Middle Valley Irrigation Company";
    f.application.platform().features().createFeatureClass(
        f.folder.file("zones.shp"), true, f.geometry().crs, {{"ZONE", FieldType::text, 60, 0}},
        {rectangle({0, 0, 1, 1}, {longName}), rectangle({0, 0, 1, 1}, {std::string("A")}),
         rectangle({0, 0, 1, 1}, {std::string("A")})});
    f.settings.Zones = f.folder.file("zones.shp");
    f.settings.ZoneField = "ZONE";
    EXPECT_THAT(lines(), Contains(HasSubstr(longName + ": has more than 25 characters")));
    EXPECT_THAT(lines(), Contains(HasSubstr("ZONE: A: is the key of 2 polygons")));
    f.settings.ZoneField = "NAME";
    EXPECT_THAT(lines(), Contains(HasSubstr("NAME: the field is missing")));
}

TEST_F(InputCheck, ZoneKeysAreCountedAsTablesHoldThem) {
    const auto make = [&](const std::vector<std::string>& keys) {
        std::vector<NewFeature> zones;
        for (const std::string& key : keys) zones.push_back(rectangle({0, 0, 1, 1}, {key}));
        f.application.platform().features().createFeatureClass(
            f.folder.file("zones.shp"), true, f.geometry().crs, {{"ZONE", FieldType::text, 60, 0}},
            zones);
    };
    f.settings.Zones = f.folder.file("zones.shp");
    f.settings.ZoneField = "ZONE";
    make({"Señorío de Ibáñez y Núñez"});  // 25 letters, a byte each
    EXPECT_THAT(lines(), testing::Not(Contains(HasSubstr("bytes in UTF-8"))));
    make({"Señorío de Ibáñez y Núñez", "Łódź"});
    EXPECT_THAT(lines(), Contains(HasSubstr("Núñez: has more than 25 bytes in UTF-8, of which "
                                            "tables keep \"Señorío de Ibáñez y N\"")));
    make({"Irrigation District of the North", "Irrigation District of the South"});
    EXPECT_THAT(lines(), Contains(HasSubstr("of which tables keep \"Irrigation District of th\", "
                                            "as of Irrigation District of the South: their rows")));
}

TEST_F(InputCheck, TypesThatDifferInCapitals) {
    f.application.platform().features().createFeatureClass(
        f.folder.file("land.shp"), true, f.geometry().crs, {{"Descriptio", FieldType::text, 60, 0}},
        {rectangle({0, 0, 1, 1}, {std::string("alfalfa")}),
         rectangle({0, 0, 1, 1}, {std::string("Alfalfa")}),
         rectangle({0, 0, 1, 1}, {std::string("Corn")})});
    f.settings.LandCover = f.folder.file("land.shp");
    EXPECT_THAT(lines(), Contains("warning: " + f.settings.LandCover +
                                  ": Descriptio: \"Alfalfa\" and \"alfalfa\" differ in capitals "
                                  "alone: they are crop types of their own, each with its own "
                                  "coefficients"));
}

TEST_F(InputCheck, AMonthWithoutRainIsNoError) {
    f.makeWeather(f.stations(),
                  [](const std::string& p, const test::Station& s, int m) -> FieldValue {
                      if (p == "P_" && m == 7) return 0.0;
                      return test::MemoryRun::usualWeather(p, s, m);
                  },
                  {"TM_", "TN_", "P_"});
    EXPECT_THAT(lines(), Contains("note: " + f.folder.file("weather.dbf") +
                                  ": P_Jul: all stations hold 0: a month without rain"));
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("P_Jul: S"))));
}

// A value at its limit is likely, one beyond it is told.
TEST_F(InputCheck, LikelyLimits) {
    const auto told = [&](const std::string& prefix, double value) {
        f.makeWeather(f.stations(),
                      [&](const std::string& p, const test::Station& s, int m) -> FieldValue {
                          if (p == prefix && s.name == "S4" && m == 7) return value;
                          return test::MemoryRun::usualWeather(p, s, m);
                      },
                      {"TM_", "TN_", "TD_", "SR_", "WS_", "P_"});
        const auto all = lines();
        return std::ranges::any_of(all, [&](const std::string& line) {
            return line.find(prefix + "Jul: S4: ") != std::string::npos &&
                   line.find(" is not likely in ") != std::string::npos;
        });
    };
    const auto expectLimit = [&](const std::string& prefix, double limit) {
        EXPECT_FALSE(told(prefix, limit)) << prefix;
        EXPECT_TRUE(told(prefix, limit + 0.01)) << prefix;
    };
    for (const char* prefix : {"TM_", "TN_", "TD_"}) expectLimit(prefix, 52);
    expectLimit("SR_", 45);
    expectLimit("WS_", 15);
    expectLimit("P_", 40);
    f.settings.TemperatureUnit = "Degree F";
    expectLimit("TM_", 125);
}

TEST_F(InputCheck, LimitsOfElevationsAndSettings) {
    auto stations = f.stations();
    const auto told = [&](double elevation, const std::string& unit) {
        f.settings.SiteElevationUnit = unit;
        stations[4].elevation = elevation;
        f.makeStations(stations);
        const auto all = lines();
        return std::ranges::any_of(all, [&](const std::string& line) {
            return line.find(" is not likely in " + unit) != std::string::npos;
        });
    };
    EXPECT_FALSE(told(6000, "Meters"));
    EXPECT_TRUE(told(6000.1, "Meters"));
    EXPECT_FALSE(told(-450, "Meters"));
    EXPECT_TRUE(told(-450.1, "Meters"));
    EXPECT_FALSE(told(19685, "Feet"));
    EXPECT_TRUE(told(19686, "Feet"));
    const auto has = [&](const std::string& text) {
        const auto all = lines();
        return std::ranges::any_of(
            all, [&](const std::string& line) { return line.find(text) != std::string::npos; });
    };
    for (const auto& [ks, odd] :
         {std::pair{0.1, false}, {0.25, false}, {0.09, true}, {0.26, true}}) {
        f.settings.Ks = ks;
        EXPECT_EQ(has("is far from 0.16 to 0.19"), odd) << ks;
    }
    for (const auto& [wind, odd] :
         {std::pair{0.0, true}, {0.1, false}, {15.0, false}, {15.1, true}}) {
        f.settings.EstimatedWindSpeed = wind;
        EXPECT_EQ(has("m/s is not likely at 2 m"), odd) << wind;
    }
    for (const auto& [year, odd] :
         {std::pair{"999", true}, {"1000", false}, {"9999", false}, {"10000", true}}) {
        f.settings.Year = year;
        EXPECT_EQ(has("is no year of four digits"), odd) << year;
    }
    for (const auto& [ground, odd] :
         {std::pair{8900.0F, false}, {8901.0F, true}, {-450.0F, false}, {-451.0F, true}}) {
        f.makeDem([height = ground](int, int) { return height; });
        EXPECT_EQ(has("holds elevations below -450 or above 8900 m"), odd) << ground;
    }
}

// A station is told that lies farther from the domain than the domain's longer side.
TEST_F(InputCheck, ReachOfStations) {
    auto stations = f.stations();
    const Envelope domain = f.geometry().extent();
    for (const auto& [away, odd] : {std::pair{0.99, false}, {1.01, true}}) {
        stations[1].x = domain.xMax + away * domain.width();
        f.makeStations(stations);
        const auto all = lines();
        EXPECT_EQ(std::ranges::any_of(all,
                                      [](const std::string& line) {
                                          return line.find("S1: lies ") != std::string::npos;
                                      }),
                  odd);
    }
}

}  // namespace
}  // namespace velmora
