// SPDX-License-Identifier: MIT
// Whole reference ET runs against an independent calculation, written plainly from the definitions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <numbers>

#include "gis/month_names.h"
#include "tests/support/run_fixture.h"

namespace velmora {
namespace {

using test::RunFixture;
using test::Station;

// The independent calculation, cell by cell.
class Reference {
  public:
    Reference(RunFixture& fixture, std::vector<Station> stations, test::Weather weather)
        : f_(fixture), stations_(std::move(stations)), weather_(std::move(weather)) {
        auto& systems = f_.application.platform().spatialReferences();
        const GridGeometry& g = f_.geometry();
        std::vector<Point> edge;
        for (int r = 0; r < g.rows; ++r) edge.push_back({g.xMin, g.rowCentre(r)});
        for (const Point& p : systems.project(edge, g.crs, systems.createGeographic(4269))) {
            latitudes_.push_back(p.y);
        }
    }

    static float dem(int c, int r) { return static_cast<float>(1300 + 31 * c + 17 * r); }
    static bool hasData(int c, int r) { return !(c == 5 && r == 7); }

    float surface(const std::string& prefix, int month, int c, int r) {
        const bool temperature = prefix[0] == 'T';
        std::vector<const Station*> used;
        std::vector<double> values;
        for (const Station& s : stations_) {
            const FieldValue v = weather_(prefix, s, month);
            const auto* n = std::get_if<double>(&v);
            if (!n) continue;
            const double stored = std::round(*n * 1e4) / 1e4;  // the table keeps four decimals
            if (temperature ? !(stored > -20 && stored < 80) : !(stored > 0 && stored < 500))
                continue;
            used.push_back(&s);
            values.push_back(stored);
        }
        double a = 0;
        double b = 0;
        if (temperature) {
            double mz = 0;
            double mv = 0;
            for (std::size_t i = 0; i < used.size(); ++i) {
                mz += used[i]->elevation / static_cast<double>(used.size());
                mv += values[i] / static_cast<double>(used.size());
            }
            double szz = 0;
            double szv = 0;
            for (std::size_t i = 0; i < used.size(); ++i) {
                szz += (used[i]->elevation - mz) * (used[i]->elevation - mz);
                szv += (used[i]->elevation - mz) * (values[i] - mv);
            }
            b = szv / szz;
            a = mv - b * mz;
            for (std::size_t i = 0; i < used.size(); ++i) values[i] -= a + b * used[i]->elevation;
        }
        const GridGeometry& g = f_.geometry();
        std::vector<std::pair<double, double>> near;
        for (std::size_t i = 0; i < used.size(); ++i) {
            const double dx = used[i]->x - g.columnCentre(c);
            const double dy = used[i]->y - g.rowCentre(r);
            near.emplace_back(dx * dx + dy * dy, values[i]);
        }
        std::sort(near.begin(), near.end());
        near.resize(std::min<std::size_t>(12, near.size()));
        double sum = 0;
        double weights = 0;
        for (const auto& [d2, v] : near) {
            sum += v / d2;
            weights += 1 / d2;
        }
        const auto idw = static_cast<float>(sum / weights);
        return temperature ? static_cast<float>(idw + a + b * static_cast<double>(dem(c, r))) : idw;
    }

    // Inches of the month.
    double refEt(int method, int month, int c, int r, int year) {
        const double TM = surface("TM_", month, c, r);
        const double TN = surface("TN_", month, c, r);
        const int lengths[] = {31, year % 4 ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        const int days = lengths[month - 1];
        const double Ra =
            radiation(latitudes_[static_cast<std::size_t>(r)], month, (days + 1) / 2, year);
        if (method == 4) {
            const double T = (TM + TN) / 2;
            return days * 0.0023 * std::sqrt(TM - TN) * (T + 17.8) * Ra / (2.501 - 0.002361 * T) /
                   25.4;
        }
        if (method == 5) {
            const double t = (TM + TN) / 2 * 1.8 + 32;
            return (0.0173 * t - 0.314) * t *
                   daylight(latitudes_[static_cast<std::size_t>(r)], month) / 100;
        }
        const int p = month == 1 ? 1 : month - 1;
        const int n = month == 12 ? 12 : month + 1;
        const double factor = (month == 1 || month == 12 ? 0.70 : 0.35) / 18;
        const double G =
            factor * (static_cast<double>(surface("TM_", n, c, r)) + surface("TN_", n, c, r) -
                      surface("TM_", p, c, r) - surface("TN_", p, c, r));
        const double Rs = surface("SR_", month, c, r);
        const double u = surface("WS_", month, c, r);
        const double z = dem(c, r);
        const double ea = e0(surface("TD_", month, c, r));
        const double clear = std::clamp(Rs / ((0.75 + 2e-5 * z) * Ra), 0.25, 1.0);
        const double Rn = 0.77 * Rs - (1.35 * clear - 0.35) * (0.34 - 0.14 * std::sqrt(ea)) *
                                          4.901e-9 *
                                          (std::pow(TM + 273.16, 4) + std::pow(TN + 273.16, 4)) / 2;
        const double T = (TM + TN) / 2;
        const double slope = 2504 * std::exp(17.27 * T / (T + 237.3)) / std::pow(T + 237.3, 2);
        const double gamma = 0.000665 * 101.3 * std::pow((293 - 0.0065 * z) / 293, 5.26);
        if (method == 6) return days * 1.26 * slope / (slope + gamma) * (Rn - G) / 2.45 / 25.4;
        const double Cn = method == 1 ? 1600 : 900;
        const double Cd = method == 1 ? 0.38 : 0.34;
        return days *
               (0.408 * slope * (Rn - G) +
                gamma * Cn / (T + 273) * u * ((e0(TM) + e0(TN)) / 2 - ea)) /
               (slope + gamma * (1 + Cd * u)) / 25.4;
    }

  private:
    static double e0(double T) { return 0.6108 * std::exp(17.27 * T / (T + 237.3)); }
    static double radiation(double latitude, int month, int day, int year) {
        const int before[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
        const int J = before[month - 1] + day + (year % 4 == 0 && month > 2 ? 1 : 0);
        const double angle = 2 * std::numbers::pi * J / (year % 4 == 0 ? 365 : 366);
        const double phi = latitude * std::numbers::pi / 180;
        const double delta = 0.409 * std::sin(angle - 1.39);
        const double w = std::acos(-std::tan(phi) * std::tan(delta));
        return 24 / std::numbers::pi * 4.92 * (1 + 0.033 * std::cos(angle)) *
               (w * std::sin(phi) * std::sin(delta) +
                std::cos(phi) * std::cos(delta) * std::sin(w));
    }
    static double daylight(double latitude, int month) {
        const int days[] = {16, 45, 75, 105, 136, 166, 197, 228, 258, 289, 319, 340};
        const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        const double phi = latitude * std::numbers::pi / 180;
        double sum = 0;
        double chosen = 0;
        for (int J = 1; J <= 365; ++J) {
            const double delta = 0.4093 * std::sin(2 * std::numbers::pi * (284 + J) / 365);
            const double hours =
                std::acos(-std::tan(phi) * std::tan(delta)) * 24 / std::numbers::pi;
            sum += hours;
            if (J == days[month - 1]) chosen = hours;
        }
        return chosen / sum * lengths[month - 1] * 100;
    }

    RunFixture& f_;
    std::vector<Station> stations_;
    test::Weather weather_;
    std::vector<double> latitudes_;
};

void expectSurface(RunFixture& f, Reference& reference, const std::string& prefix, int month) {
    const Grid grid = f.output(prefix + GetMonthName(month));
    ASSERT_TRUE(grid.geometry.sameCells(f.geometry()));
    for (int r = 0; r < f.geometry().rows; ++r) {
        for (int c = 0; c < f.geometry().columns; ++c) {
            if (prefix[0] == 'T' && !Reference::hasData(c, r)) {
                EXPECT_EQ(grid.at(c, r), kNoData);
            } else {
                ASSERT_NEAR(grid.at(c, r), reference.surface(prefix, month, c, r), 2e-5)
                    << prefix << month << " " << c << " " << r;
            }
        }
    }
}

void expectRefEt(RunFixture& f, Reference& reference, int method, int month, int year) {
    const Grid grid = f.output("RefET_" + GetMonthName(month) + "_" + std::to_string(method));
    for (int r = 0; r < f.geometry().rows; ++r) {
        for (int c = 0; c < f.geometry().columns; ++c) {
            if (!Reference::hasData(c, r)) {
                EXPECT_EQ(grid.at(c, r), kNoData);
                continue;
            }
            const double expected = reference.refEt(method, month, c, r, year);
            ASSERT_NEAR(grid.at(c, r) / expected, 1, 1e-5) << method << " " << month;
        }
    }
}

TEST(RefEtChain, EveryMethodAgreesWithTheIndependentCalculation) {
    RunFixture f;
    Reference reference(f, RunFixture::stations(), RunFixture::usualWeather);
    f.settings.BeginMonth = "Jan";
    f.settings.EndMonth = "Dec";
    for (int method = 1; method <= 6; ++method) {
        f.settings.RefETMethod = std::to_string(method);
        f.settings.Year = method % 2 ? "2006" : "2008";
        ASSERT_TRUE(f.run()) << f.allMessages();
        for (const int month : {1, 2, 7, 12}) {
            expectRefEt(f, reference, method, month, method % 2 ? 2006 : 2008);
        }
        if (method > 1) continue;
        for (const char* prefix : {"TM_", "TN_", "TD_", "SR_", "WS_"})
            expectSurface(f, reference, prefix, 7);
    }
}

TEST(RefEtChain, MessagesComeInTheirOrder) {
    RunFixture f;
    f.world.platform.clock().step = 95;  // two looks at the clock: 95 seconds
    ASSERT_TRUE(f.run());
    const auto& lines = f.monitor.messages;
    const std::vector<std::string> head = {
        "Velmora is starting to run ...", "Previous setttings has been loaded ...",
        "Access MDB has been created for operations ...", "TM_May is ready..."};
    EXPECT_TRUE(std::equal(head.begin(), head.end(), lines.begin()));
    const std::vector<std::string> tail = {"All parameter layers are ready now...",
                                           "use ASCE Std  Penman-Monteith (Short Crop: Grass) ...",
                                           "Reference ET in Junare estimated successfully ...",
                                           "Reference ET in Julare estimated successfully ...",
                                           "Estimation of Reference ET is done ... ",
                                           "Time for estimating referece ET: 1.58 Minutes"};
    ASSERT_GT(lines.size(), tail.size());
    EXPECT_EQ(std::vector<std::string>(lines.end() - static_cast<long>(tail.size()), lines.end()),
              tail);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "Interpolation of <Soalr radiation> is done!"),
              2);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "Interpolation of <Wind Speed> is done!"), 2);
    EXPECT_EQ(f.application.messages(),
              std::vector<std::string>{"Time for estimating referece ET: 1.58 Minutes"});
    ASSERT_EQ(f.application.document().layers.size(), 2U);
    const auto& layer = static_cast<const test::FakeLayer&>(*f.application.document().layers[0]);
    EXPECT_EQ(layer.name(), "RefET_Jun_2");
    EXPECT_EQ(layer.ramp.from, (Rgb{0, 255, 0}));
    EXPECT_EQ(layer.ramp.to, (Rgb{50, 50, 100}));
}

TEST(RefEtChain, TheWorkDatabaseShowsTheLastMonth) {
    RunFixture f;
    ASSERT_TRUE(f.run());
    auto& connections = f.application.platform().connections();
    const auto records =
        connections
            .open("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + f.folder.file("out/GridOP.mdb"))
            ->open("Select * from GGG");
    const std::vector<std::string> names = {"Latitude", "Elevation", "TM", "TN", "TD",   "TA",
                                            "GG",       "SA",        "SR", "WS", "RefET"};
    ASSERT_EQ(records->fieldCount(), 11);
    for (int i = 0; i < 11; ++i)
        EXPECT_EQ(records->fieldName(i), names[static_cast<std::size_t>(i)]);
    const Grid july = f.output("RefET_Jul_2");
    for (int c = 0; c < f.geometry().columns; ++c) {
        for (int r = 0; r < f.geometry().rows; ++r, records->moveNext()) {
            ASSERT_FALSE(records->eof());
            EXPECT_EQ(static_cast<float>(std::get<double>(records->value("RefET"))), july.at(c, r));
            EXPECT_TRUE(isNull(records->value("TA")));
        }
    }
    EXPECT_TRUE(records->eof());
}

TEST(RefEtChain, FeetAndFahrenheitGiveTheSame) {
    RunFixture f;
    ASSERT_TRUE(f.run());
    const Grid metric = f.output("RefET_Jul_2");
    auto stations = RunFixture::stations();
    for (auto& s : stations) s.elevation = std::round(s.elevation / 0.3048 * 100) / 100;
    f.makeStations(stations);
    f.makeDem([](int c, int r) {
        return Reference::hasData(c, r) ? static_cast<float>((1300 + 31 * c + 17 * r) / 0.3048)
                                        : kNoData;
    });
    f.makeWeather(RunFixture::stations(),
                  [](const std::string& p, const Station& s, int m) -> FieldValue {
                      const double v = std::get<double>(RunFixture::usualWeather(p, s, m));
                      return p[0] == 'T' ? v * 9 / 5 + 32 : v;
                  });
    f.settings.DemUnit = f.settings.SiteElevationUnit = "Feet";
    f.settings.TemperatureUnit = "Degree F";
    ASSERT_TRUE(f.run()) << f.allMessages();
    const Grid imperial = f.output("RefET_Jul_2");
    EXPECT_NEAR(f.output("NewDEM").at(10, 3), 1661, 0.01);
    for (std::size_t i = 0; i < metric.values.size(); ++i) {
        EXPECT_NEAR(imperial.values[i], metric.values[i], 2e-3 * std::fabs(metric.values[i]));
    }
}

TEST(RefEtChain, StationsOutsideTheRangesTakeNoPart) {
    RunFixture f;
    const test::Weather weather = [](const std::string& p, const Station& s, int m) -> FieldValue {
        if (s.name == "S2" && p == "TM_") return -20.0;
        if (s.name == "S3" && p == "TM_") return 80.0;
        if (s.name == "S4" && p == "TM_") return -19.9;
        if (s.name == "S5" && p == "WS_") return 0.0;
        if (s.name == "S6" && p == "SR_") return 500.0;
        if (s.name == "S7" && p == "TD_") return FieldValue();
        return RunFixture::usualWeather(p, s, m);
    };
    f.makeWeather(RunFixture::stations(), weather);
    ASSERT_TRUE(f.run()) << f.allMessages();
    Reference reference(f, RunFixture::stations(), weather);
    for (const char* prefix : {"TM_", "TD_", "SR_", "WS_"}) expectSurface(f, reference, prefix, 7);
}

TEST(RefEtChain, MethodsFourAndFiveMakeTemperaturesOnly) {
    for (const char* method : {"4", "5"}) {
        RunFixture f;
        f.settings.RefETMethod = method;
        ASSERT_TRUE(f.run());
        EXPECT_TRUE(f.hasOutput("TM_Jul"));
        for (const char* grid : {"TD_Jul", "SR_Jul", "WS_Jul", "TA_Jul"}) {
            EXPECT_FALSE(f.hasOutput(grid)) << method << ": " << grid;
        }
    }
}

TEST(RefEtChain, QuantitiesThatTheSettingsTakeAsMissingAreNotMade) {
    RunFixture f;
    f.settings.HasTdew = f.settings.HasSR = f.settings.HasWS = false;
    ASSERT_TRUE(f.run());
    for (const char* grid : {"TD_Jul", "SR_Jul", "WS_Jul"}) EXPECT_FALSE(f.hasOutput(grid)) << grid;
}

TEST(RefEtChain, MeanTemperatureIsMadeWhenThere) {
    RunFixture f;
    f.makeWeather(RunFixture::stations(), RunFixture::usualWeather,
                  {"TM_", "TN_", "TD_", "SR_", "WS_", "TA_"});
    f.settings.HasTmean = true;
    ASSERT_TRUE(f.run());
    EXPECT_TRUE(f.hasOutput("TA_Jul"));
}

TEST(RefEtChain, MissingInputsAreEstimated) {
    RunFixture f;
    f.makeWeather(RunFixture::stations(), RunFixture::usualWeather, {"TM_", "TN_"});
    f.settings.HasTdew = f.settings.HasSR = f.settings.HasWS = false;
    f.settings.Ko = 1.5;
    f.settings.EstimatedWindSpeed = 2.5;
    ASSERT_TRUE(f.run()) << f.allMessages();
    const auto records =
        f.application.platform()
            .connections()
            .open("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + f.folder.file("out/GridOP.mdb"))
            ->open("Select * from GGG");
    const auto v = [&](const char* name) { return std::get<double>(records->value(name)); };
    EXPECT_EQ(v("TD"), v("TN") - 1.5);
    EXPECT_EQ(v("WS"), 2.5);
    EXPECT_DOUBLE_EQ(v("SR"), 0.16 * std::sqrt(v("TM") - v("TN")) * v("SA"));
    EXPECT_NEAR(v("SA"), 40.9, 0.5);
    EXPECT_GT(v("RefET"), 3);
}

TEST(RefEtChain, AMonthWithoutItsFieldIsEstimatedAlone) {
    RunFixture f;
    // The table has wind for no month but July: the flag is set, June's field is missing.
    std::vector<Field> fields = {{"STN", FieldType::text, 20, 0}};
    const std::vector<std::string> names = {"TM_May", "TM_Jun", "TM_Jul", "TM_Aug", "TN_May",
                                            "TN_Jun", "TN_Jul", "TN_Aug", "TD_Jun", "TD_Jul",
                                            "SR_Jun", "SR_Jul", "WS_Jul"};
    for (const auto& name : names) fields.push_back({name, FieldType::number, 10, 4});
    std::vector<std::vector<FieldValue>> records;
    for (const Station& s : RunFixture::stations()) {
        std::vector<FieldValue> record = {s.name};
        for (const auto& name : names) {
            record.push_back(
                RunFixture::usualWeather(name.substr(0, 3), s, GetMonthNumber(name.substr(3))));
        }
        records.push_back(record);
    }
    f.application.platform().features().createTable(f.folder.file("weather.dbf"), fields, records);
    ASSERT_TRUE(f.run()) << f.allMessages();
    EXPECT_FALSE(f.hasOutput("WS_Jun"));
    EXPECT_TRUE(f.hasOutput("WS_Jul"));
    Reference reference(f, RunFixture::stations(), RunFixture::usualWeather);
    expectRefEt(f, reference, 2, 7, 2006);
}

TEST(RefEtChain, APlaneInElevationIsReturnedExactly) {
    RunFixture f;
    f.makeWeather(RunFixture::stations(),
                  [](const std::string& p, const Station& s, int) -> FieldValue {
                      if (p[0] != 'T') return 5.0;
                      return (p == "TM_" ? 30 : 12) - 0.0065 * s.elevation;
                  });
    ASSERT_TRUE(f.run());
    const Grid surface = f.output("TM_Jul");
    EXPECT_NEAR(surface.at(10, 3), 30 - 0.0065 * (1300 + 310 + 51), 1e-3);
    for (const float wind : f.output("WS_Jul").values) EXPECT_EQ(wind, 5);
}

TEST(RefEtChain, RunningAgainReplacesEverything) {
    RunFixture f;
    ASSERT_TRUE(f.run());
    const Grid first = f.output("RefET_Jul_2");
    f.makeDem([](int, int) { return 2000.0F; });
    ASSERT_TRUE(f.run());
    EXPECT_EQ(f.output("NewDEM").values, std::vector<float>(37 * 21, 2000.0F));
    EXPECT_NE(f.output("RefET_Jul_2").values, first.values);
    for (const auto& entry : std::filesystem::directory_iterator(f.folder.file("out"))) {
        EXPECT_NE(entry.path().filename().string()[0], '.') << entry.path();
    }
}

TEST(RefEtChain, TheStationsKeepTheWorkingField) {
    RunFixture f;
    f.settings.BeginMonth = f.settings.EndMonth = "Jul";
    ASSERT_TRUE(f.run());
    const auto layer =
        f.application.platform().features().openFeatureClass(f.folder.file("stations.shp"));
    EXPECT_EQ(layer->fields().size(), 3U);
    EXPECT_EQ(layer->fields()[2].name, "TempTTT");
    EXPECT_FALSE(isNull(layer->value(0, "TempTTT")));
    EXPECT_EQ(std::get<std::string>(layer->value(3, "staname")), "S3");
}

TEST(RefEtChain, StationsInAnotherSystemAreTransformed) {
    RunFixture f;
    ASSERT_TRUE(f.run());
    const Grid before = f.output("SR_Jul");
    auto& platform = f.application.platform();
    const std::string geographic = platform.spatialReferences().createGeographic(4269);
    std::vector<NewFeature> features;
    for (const Station& s : RunFixture::stations()) {
        const Point p =
            platform.spatialReferences().project({{s.x, s.y}}, f.geometry().crs, geographic)[0];
        features.push_back({{p}, {s.name, s.elevation}});
    }
    platform.features().createFeatureClass(
        f.folder.file("stations.shp"), false, geographic,
        {{"staname", FieldType::text, 20, 0}, {"ELEVATION", FieldType::number, 10, 2}}, features);
    ASSERT_TRUE(f.run()) << f.allMessages();
    const Grid after = f.output("SR_Jul");
    for (std::size_t i = 0; i < before.values.size(); ++i) {
        EXPECT_NEAR(after.values[i], before.values[i], 1e-4);
    }
}

}  // namespace
}  // namespace velmora
