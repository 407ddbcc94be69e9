// SPDX-License-Identifier: MIT
// Whole precipitation runs against an independent calculation, written plainly from the
// definitions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <random>

#include "gis/month_names.h"
#include "gis/numbers.h"
#include "platform/threads/parallel_loop.h"
#include "precip/precipitation_run.h"
#include "tests/support/plain_kriging.h"
#include "tests/support/run_fixture.h"

namespace velmora {
namespace {

using test::RunFixture;
using test::Station;

struct PrecipitationChain : testing::Test {
    RunFixture f;
    std::vector<Station> stations = RunFixture::stations();
    test::Weather weather = RunFixture::usualWeather;

    PrecipitationChain() { makeWeather(); }
    void makeWeather() { f.makeWeather(stations, weather, {"P_"}); }
    static float dem(int c, int r) { return static_cast<float>(1300 + 31 * c + 17 * r); }
    static bool hasData(int c, int r) { return !(c == 5 && r == 7); }

    // Inches as the table keeps them, to four decimals.
    double stored(const Station& s, int month) const {
        return std::round(std::get<double>(weather("P_", s, month)) * 1e4) / 1e4;
    }

    // The lines of a month: residuals of the stations that count, and the trend.
    struct Detrended {
        std::vector<Sample> residuals;
        double a = 0;
        double b = 0;
    };
    Detrended detrended(int month) const {
        std::vector<const Station*> used;
        for (const Station& s : stations) {
            if (isNull(weather("P_", s, month))) continue;
            if (stored(s, month) > 0 && stored(s, month) < 1000) used.push_back(&s);
        }
        Detrended d;
        double mz = 0;
        double mp = 0;
        for (const Station* s : used) {
            mz += s->elevation / static_cast<double>(used.size());
            mp += stored(*s, month) / static_cast<double>(used.size());
        }
        double szz = 0;
        double szp = 0;
        for (const Station* s : used) {
            szz += (s->elevation - mz) * (s->elevation - mz);
            szp += (s->elevation - mz) * (stored(*s, month) - mp);
        }
        d.b = szp / szz;
        d.a = mp - d.b * mz;
        for (const Station* s : used) {
            d.residuals.push_back({{s->x, s->y}, stored(*s, month) - d.a - d.b * s->elevation});
        }
        return d;
    }

    // The month's grid against trend plus plainly kriged residual, within a share of its range.
    void expectEdk(int month, const SphericalModel& model, double share) {
        const Detrended d = detrended(month);
        const Grid grid = f.output("PPT_" + GetMonthName(month));
        const GridGeometry& g = f.geometry();
        ASSERT_TRUE(grid.geometry.sameCells(g));
        const auto [low, high] = range(grid);
        for (int r = 0; r < g.rows; ++r) {
            for (int c = 0; c < g.columns; ++c) {
                if (!hasData(c, r)) {
                    EXPECT_EQ(grid.at(c, r), kNoData);
                    continue;
                }
                const double residual =
                    test::plainKriging(d.residuals, {g.columnCentre(c), g.rowCentre(r)}, model);
                const double expected =
                    std::max(0.0, residual + d.a + d.b * static_cast<double>(dem(c, r)));
                ASSERT_NEAR(grid.at(c, r), expected, share * (high - low)) << c << " " << r;
            }
        }
    }
    static std::pair<double, double> range(const Grid& grid) {
        double low = HUGE_VAL;
        double high = -HUGE_VAL;
        for (const float v : grid.values) {
            if (v == kNoData) continue;
            low = std::min<double>(low, v);
            high = std::max<double>(high, v);
        }
        return {low, high};
    }
    FieldValue stationValue(std::size_t record, const std::string& field) {
        return f.application.platform()
            .features()
            .openFeatureClass(f.folder.file("stations.shp"))
            ->value(record, field);
    }
};

TEST_F(PrecipitationChain, EdkAgreesWithTheIndependentCalculation) {
    f.settings.BeginMonth = "Jan";
    f.settings.EndMonth = "Dec";
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    ASSERT_EQ(f.application.diagnosed().size(), 12U);
    for (int month = 1; month <= 12; ++month) {
        const SurfaceDiagnostics& d =
            f.application.diagnosed()[static_cast<std::size_t>(month - 1)];
        EXPECT_TRUE(d.kriged);
        expectEdk(month, d.semivariogram->model, 1e-6);
        if (month % 4 == 1) expectEdk(month, test::plainModel(detrended(month).residuals), 5e-3);
    }
}

TEST_F(PrecipitationChain, FeetAreConverted) {
    ASSERT_TRUE(f.runPrecipitation());
    const Grid metric = f.output("PPT_Jul");
    std::vector<Station> feet = stations;
    for (Station& s : feet) s.elevation = std::round(s.elevation / 0.3048 * 100) / 100;
    f.makeStations(feet);
    f.settings.SiteElevationUnit = "Feet";
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    const Grid imperial = f.output("PPT_Jul");
    for (std::size_t i = 0; i < metric.values.size(); ++i) {
        if (metric.values[i] == kNoData) continue;
        EXPECT_NEAR(imperial.values[i], metric.values[i], 1e-3);
    }
    EXPECT_NEAR(f.application.diagnosed()[1].trend->b, detrended(7).b, 1e-6);
    // A foot is 0.3048 m, in the line and in what it leaves.
    for (std::size_t i = 0; i < feet.size(); ++i)
        stations[i].elevation = 0.3048 * feet[i].elevation;
    const Detrended exact = detrended(7);
    EXPECT_NEAR(f.application.diagnosed()[1].trend->b, exact.b, 1e-12);
    for (std::size_t i = 0; i < feet.size(); ++i) {
        EXPECT_NEAR(std::get<double>(stationValue(i, "RefPPT")), exact.residuals[i].value, 1e-9);
    }
}

// Records in any order, some at one place: the same files.
void shuffleRecords(RunFixture& f, std::vector<Station> stations, const test::Weather& weather,
                    unsigned seed, const std::vector<std::string>& prefixes) {
    std::mt19937 random(seed);
    for (const bool table : {false, true}) {
        for (std::size_t i = stations.size(); i > 1; --i) {
            std::swap(stations[i - 1], stations[random() % i]);
        }
        if (table) {
            f.makeWeather(stations, weather, prefixes);
        } else {
            f.makeStations(stations);
        }
    }
}

TEST(CanonicalRun, TheOrderOfTheRecordsChangesNoGrid) {
    RunFixture f;
    std::vector<Station> stations = RunFixture::stations();
    for (const std::size_t i : {2U, 2U, 7U}) {  // stations at one place, at other elevations
        Station twin = stations[i];
        twin.name = "S" + std::to_string(40 + stations.size());
        twin.elevation += 13.37;
        stations.push_back(twin);
    }
    const test::Weather weather = [](const std::string& p, const Station& s, int m) -> FieldValue {
        return s.name == "S4" && p == "P_" ? FieldValue(0.0) : RunFixture::usualWeather(p, s, m);
    };
    const std::vector<std::string> prefixes = {"TM_", "TN_", "TD_", "SR_", "WS_", "P_"};
    f.makeReferenceGrid(6, f.geometry(),
                        [](int c, int r) { return static_cast<float>(2000 + 9 * c + 5 * r); });
    f.makeReferenceGrid(7, f.geometry(),
                        [](int c, int r) { return static_cast<float>(1000 + 3 * c + 7 * r); });
    std::map<std::string, std::vector<float>> first;
    for (const unsigned seed : {0U, 1U, 2U, 3U, 4U}) {
        shuffleRecords(f, stations, weather, seed, prefixes);
        for (const char* method : {"EDK", "PRISM_REF"}) {
            f.settings.PrecipitationMethod = method;
            ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
            for (const char* grid : {"PPT_Jun", "PPT_Jul"}) {
                const auto values = f.output(grid).values;
                EXPECT_EQ(first.emplace(method + std::string(grid), values).first->second, values)
                    << method << grid << seed;
            }
        }
        ASSERT_TRUE(f.run()) << f.allMessages();
        for (const char* grid : {"TM_Jul", "TN_Jun", "TD_Jul", "SR_Jun", "WS_Jul", "RefET_Jul_2"}) {
            const auto values = f.output(grid).values;
            EXPECT_EQ(first.emplace(grid, values).first->second, values) << grid << seed;
        }
    }
}

// Notes when a layer is added among the messages.
class NotingDocument : public test::FakeDocument {
  public:
    explicit NotingDocument(test::FakePrompts& prompts) : prompts_(prompts) {}
    void addLayer(std::unique_ptr<IRasterLayer> layer) override {
        prompts_.messages.push_back("layer " + layer->name());
        FakeDocument::addLayer(std::move(layer));
    }

  private:
    test::FakePrompts& prompts_;
};

class NotingApplication : public test::TestApplication {
  public:
    using TestApplication::TestApplication;
    NotingDocument& document() override { return noting_; }

  private:
    NotingDocument noting_{prompts()};
};

TEST_F(PrecipitationChain, AMonthIsOverWhenItsLayerIsAdded) {
    NotingApplication application(f.world.platform, f.folder.file("settings"));
    ASSERT_TRUE(PrecipitationRun(application, f.settings).run());
    EXPECT_EQ(application.messages(),
              (std::vector<std::string>{"Using EDK to interpolate precipitation...",
                                        "layer PPT_Jun", "PPT Calculation for Jun is Over!",
                                        "layer PPT_Jul", "PPT Calculation for Jul is Over!"}));
}

// Zeros in July, of all stations that have a value or of some.
test::Weather zerosInJuly(const std::function<bool(const Station&)>& dry) {
    return [dry](const std::string& p, const Station& s, int m) -> FieldValue {
        if (s.name == "S9") return FieldValue();
        return m == 7 && dry(s) ? FieldValue(0.0) : RunFixture::usualWeather(p, s, m);
    };
}

TEST_F(PrecipitationChain, AMonthWithoutRainIsAGridOfZero) {
    weather = zerosInJuly([](const Station&) { return true; });
    makeWeather();
    f.settings.EndMonth = "Aug";
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    const Grid july = f.output("PPT_Jul");
    ASSERT_TRUE(july.geometry.sameCells(f.geometry()));
    for (int r = 0; r < july.geometry.rows; ++r) {
        for (int c = 0; c < july.geometry.columns; ++c) {
            EXPECT_EQ(july.at(c, r), hasData(c, r) ? 0 : kNoData);
            EXPECT_FALSE(hasData(c, r) && std::signbit(july.at(c, r)));
        }
    }
    EXPECT_GT(f.output("PPT_Aug").at(3, 3), 0);
    EXPECT_EQ(f.application.messages(),
              (std::vector<std::string>{
                  "Using EDK to interpolate precipitation...", "PPT Calculation for Jun is Over!",
                  "PPT Calculation for Jul is Over!", "PPT Calculation for Aug is Over!"}));
    EXPECT_EQ(f.application.prompts().notices,
              std::vector<std::string>{
                  "PPT_Jul: all 15 stations with a value of weather.P_Jul hold 0, a month without "
                  "rain: the grid is 0 where the DEM has data"});
    EXPECT_EQ(f.application.document().layers.size(), 3U);
    EXPECT_EQ(f.application.diagnosed().size(), 2U);
}

TEST_F(PrecipitationChain, StationsThatHoldZeroAreToldAndHaveErrors) {
    weather = zerosInJuly([](const Station& s) { return s.name < "S13"; });  // S0, S1, S10 to S12
    makeWeather();
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_EQ(f.application.prompts().notices,
              std::vector<std::string>{
                  "PPT_Jul: 5 of 15 stations hold 0 in field weather.P_Jul and take no part"});
    EXPECT_EQ(f.application.diagnosed()[0].zeroStations, 0U);
    const SurfaceDiagnostics& d = f.application.diagnosed()[1];
    EXPECT_EQ(d.validStations, 10U);
    EXPECT_EQ(d.zeroStations, 5U);
    ASSERT_EQ(d.leaveOneOut.size(), 15U);
    // A dry station is predicted by the surface of the wet ones.
    const Detrended wet = detrended(7);
    double squares = 0;
    for (const LeftOutStation& left : d.leaveOneOut) squares += left.error() * left.error() / 15;
    EXPECT_NEAR(*d.rmse(), std::sqrt(squares), 1e-12);
    for (std::size_t i = 10; i < 15; ++i) {
        const auto s = std::ranges::find(stations, d.leaveOneOut[i].station, &Station::name);
        ASSERT_LT(s->name, "S13");
        EXPECT_EQ(d.leaveOneOut[i].observed, 0);
        const double residual =
            test::plainKriging(wet.residuals, {s->x, s->y}, d.semivariogram->model);
        EXPECT_NEAR(d.leaveOneOut[i].predicted,
                    std::max(0.0, residual + wet.a + wet.b * s->elevation), 1e-6);
    }
}

TEST_F(PrecipitationChain, EdkMessagesAndLayers) {
    f.settings.BeginMonth = "Apr";
    f.settings.EndMonth = "Jun";
    ASSERT_TRUE(f.runPrecipitation());
    EXPECT_EQ(f.application.messages(),
              (std::vector<std::string>{
                  "Using EDK to interpolate precipitation...", "PPT Calculation for Apr is Over!",
                  "PPT Calculation for May is Over!", "PPT Calculation for Jun is Over!"}));
    ASSERT_EQ(f.application.document().layers.size(), 3U);
    const auto& layer = static_cast<const test::FakeLayer&>(*f.application.document().layers[0]);
    EXPECT_EQ(layer.name(), "PPT_Apr");
    EXPECT_EQ(layer.ramp.from, (Rgb{200, 50, 50}));
    EXPECT_EQ(layer.ramp.to, (Rgb{0, 255, 255}));
    EXPECT_TRUE(f.hasOutput("PPT_Jun"));
    EXPECT_FALSE(f.hasOutput("PPT_Mar"));
    // Nothing but the three grids (and their shared table) is written.
    for (const auto& entry : std::filesystem::directory_iterator(f.folder.file("out"))) {
        const std::string name = entry.path().filename();
        EXPECT_TRUE((name.starts_with("PPT_") && name.size() == 7) ||
                    name == "velmora_made_ppt.txt" || name == "velmora_record_ppt.json")
            << name;
    }
}

TEST_F(PrecipitationChain, StationsOutsideTheRangeTakeNoPart) {
    weather = [](const std::string& p, const Station& s, int m) -> FieldValue {
        if (s.name == "S2") return 0.0;
        if (s.name == "S3") return 1000.0;
        if (s.name == "S4") return FieldValue();
        if (s.name == "S5") return -0.5;
        if (s.name == "S6") return 12000.0;
        return RunFixture::usualWeather(p, s, m);
    };
    makeWeather();
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    const SurfaceDiagnostics& d = f.application.diagnosed()[1];
    expectEdk(7, d.semivariogram->model, 1e-6);
    EXPECT_EQ(d.validStations, 11U);
    ASSERT_EQ(d.excluded.size(), 5U);
    EXPECT_EQ(d.excluded[0].station + " " + d.excluded[0].reason, "S2 0 is not between 0 and 1000");
    EXPECT_EQ(d.excluded[2].reason, "has no value");
}

TEST_F(PrecipitationChain, NegativeCellsBecomeZero) {
    weather = [](const std::string&, const Station& s, int) -> FieldValue {
        return 0.001 * (s.elevation - 1290);
    };
    stations.resize(9);
    for (std::size_t i = 0; i < stations.size(); ++i) {
        stations[i].elevation = 1310 + 40 * static_cast<double>(i);
    }
    f.makeStations(stations);
    makeWeather();
    f.makeDem([](int c, int r) { return hasData(c, r) ? dem(c, r) - 200 : kNoData; });
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    const Grid grid = f.output("PPT_Jul");
    std::size_t zeros = 0;
    for (int r = 0; r < grid.geometry.rows; ++r) {
        for (int c = 0; c < grid.geometry.columns; ++c) {
            const float v = grid.at(c, r);
            if (!hasData(c, r)) {
                EXPECT_EQ(v, kNoData);
            } else if (dem(c, r) - 200 < 1290) {
                EXPECT_EQ(v, 0);
                EXPECT_FALSE(std::signbit(v));
                ++zeros;
            } else {
                EXPECT_NEAR(v, 0.001 * (dem(c, r) - 200 - 1290), 1e-5);
            }
        }
    }
    EXPECT_GT(zeros, 20U);
}

TEST_F(PrecipitationChain, AStationsOwnEstimateIsNotNegativeEither) {
    weather = [](const std::string&, const Station& s, int) -> FieldValue {
        return std::max(0.01, 0.002 * (s.elevation - 1400));
    };
    makeWeather();
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    const auto& errors = f.application.diagnosed()[0].leaveOneOut;
    const auto low = std::ranges::min_element(errors, {}, &LeftOutStation::predicted);
    EXPECT_EQ(low->predicted, 0);
}

TEST_F(PrecipitationChain, APlaneInElevationIsReturnedExactly) {
    weather = [](const std::string&, const Station& s, int) -> FieldValue {
        return 0.25 + s.elevation / 1024;
    };
    for (Station& s : stations)
        s.elevation = 512 * std::round(s.elevation / 512) + 64 * (s.x > 407000);
    f.makeStations(stations);
    makeWeather();
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    const Grid grid = f.output("PPT_Jul");
    for (int r = 0; r < grid.geometry.rows; ++r) {
        for (int c = 0; c < grid.geometry.columns; ++c) {
            if (hasData(c, r)) {
                ASSERT_NEAR(grid.at(c, r), 0.25 + static_cast<double>(dem(c, r)) / 1024, 3e-4);
            }
        }
    }
}

TEST_F(PrecipitationChain, AlikeStationsGiveAConstant) {
    weather = [](const std::string&, const Station&, int) -> FieldValue { return 1.75; };
    makeWeather();
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    for (const float v : f.output("PPT_Jul").values) {
        if (v != kNoData) {
            EXPECT_NEAR(v, 1.75, 1e-6);
        }
    }
}

TEST_F(PrecipitationChain, ThreeStationsAreWeightedByDistance) {
    stations.resize(3);
    f.makeStations(stations);
    makeWeather();
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_FALSE(f.application.diagnosed()[1].kriged);
    const Detrended d = detrended(7);
    const Grid grid = f.output("PPT_Jul");
    const GridGeometry& g = f.geometry();
    for (int r = 0; r < g.rows; r += 4) {
        for (int c = 0; c < g.columns; c += 3) {
            if (!hasData(c, r)) continue;
            double sum = 0;
            double weights = 0;
            for (const Sample& s : d.residuals) {
                const double w = 1 / (std::pow(s.at.x - g.columnCentre(c), 2) +
                                      std::pow(s.at.y - g.rowCentre(r), 2));
                sum += w * s.value;
                weights += w;
            }
            const double expected =
                std::max(0.0, sum / weights + d.a + d.b * static_cast<double>(dem(c, r)));
            EXPECT_NEAR(grid.at(c, r), expected, 1e-5);
        }
    }
}

TEST_F(PrecipitationChain, CoincidentStationsCountOnceForKriging) {
    // The twin's residual differs from its own by 0.2; the mean is what is kriged.
    Station twin = stations[6];
    twin.name = "S40";
    stations.push_back(twin);
    f.makeStations(stations);
    makeWeather();
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    Detrended d = detrended(7);
    d.residuals[6].value = (d.residuals[6].value + d.residuals.back().value) / 2;
    d.residuals.pop_back();
    const SphericalModel model = f.application.diagnosed()[1].semivariogram->model;
    const Grid grid = f.output("PPT_Jul");
    for (int c = 0; c < 37; c += 4) {
        const double residual = test::plainKriging(
            d.residuals, {f.geometry().columnCentre(c), f.geometry().rowCentre(10)}, model);
        EXPECT_NEAR(grid.at(c, 10),
                    std::max(0.0, residual + d.a + d.b * static_cast<double>(dem(c, 10))), 2e-5);
    }
}

TEST_F(PrecipitationChain, TheStationsKeepTheResidualsOfTheLastMonth) {
    weather = [](const std::string& p, const Station& s, int m) -> FieldValue {
        return s.name == "S5" && m == 7 ? FieldValue(0.0) : RunFixture::usualWeather(p, s, m);
    };
    makeWeather();
    ASSERT_TRUE(f.runPrecipitation());
    const Detrended july = detrended(7);
    const Detrended june = detrended(6);
    EXPECT_NEAR(std::get<double>(stationValue(0, "RefPPT")), july.residuals[0].value, 1e-9);
    // Not valid in July: the value of June stays.
    EXPECT_NEAR(std::get<double>(stationValue(5, "RefPPT")), june.residuals[5].value, 1e-9);
    EXPECT_EQ(std::get<std::string>(stationValue(5, "staname")), "S5");
    EXPECT_EQ(std::get<double>(stationValue(5, "ELEVATION")), stations[5].elevation);
}

TEST_F(PrecipitationChain, RunningAgainReplacesTheGrids) {
    ASSERT_TRUE(f.runPrecipitation());
    const Grid first = f.output("PPT_Jul");
    weather = [](const std::string&, const Station&, int) -> FieldValue { return 2.5; };
    makeWeather();
    ASSERT_TRUE(f.runPrecipitation());
    EXPECT_NEAR(f.output("PPT_Jul").at(3, 3), 2.5, 1e-6);
    EXPECT_NE(first.at(3, 3), f.output("PPT_Jul").at(3, 3));
}

TEST_F(PrecipitationChain, OneThreadAndManyGiveTheSameGrid) {
    f.settings.CellSize = 40;
    platform::useThreads(1);
    ASSERT_TRUE(f.runPrecipitation());
    const Grid one = f.output("PPT_Jul");
    platform::useThreads(0);
    ASSERT_TRUE(f.runPrecipitation());
    EXPECT_EQ(f.output("PPT_Jul").values, one.values);
}

TEST_F(PrecipitationChain, LeaveOneOutMakesEverythingAnew) {
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation());
    const SurfaceDiagnostics d = f.application.diagnosed()[0];
    const std::vector<Station> all = stations;
    double sum = 0;
    double squares = 0;
    for (std::size_t left = 0; left < all.size(); ++left) {
        stations = all;
        stations.erase(stations.begin() + static_cast<std::ptrdiff_t>(left));
        const Detrended others = detrended(6);
        const double residual = test::plainKriging(others.residuals, {all[left].x, all[left].y},
                                                   test::plainModel(others.residuals));
        const double expected = std::max(0.0, residual + others.a + others.b * all[left].elevation);
        EXPECT_EQ(d.leaveOneOut[left].station, all[left].name);
        EXPECT_NEAR(d.leaveOneOut[left].observed, stored(all[left], 6), 1e-9);
        EXPECT_NEAR(d.leaveOneOut[left].predicted, expected, 2e-3);
        sum += d.leaveOneOut[left].error() / static_cast<double>(all.size());
        squares += std::pow(d.leaveOneOut[left].error(), 2) / static_cast<double>(all.size());
    }
    stations = all;
    EXPECT_NEAR(*d.bias(), sum, 1e-12);
    EXPECT_NEAR(*d.rmse(), std::sqrt(squares), 1e-12);
    for (const LeftOutStation& s : d.leaveOneOut) {
        EXPECT_LE(std::fabs(s.error()), std::fabs(d.worst()->error()));
    }
    EXPECT_NEAR(d.trend->a, detrended(6).a, 1e-9);
    EXPECT_GT(*d.rSquared, 0);
    EXPECT_LT(*d.rSquared, 1);
}

// The reference grids of these tests are coarser than the run's and reach beyond it.
struct PrismChain : PrecipitationChain {
    GridGeometry coarse{11, 8, 399000, 4501000, 1500, f.geometry().crs};

    static float reference(int month, int c, int r) {
        return static_cast<float>(2540 * (0.8 + 0.1 * month + 0.05 * c + 0.03 * r));
    }
    PrismChain() {
        f.settings.PrecipitationMethod = "PRISM_REF";
        for (int month = 1; month <= 12; ++month) {
            f.makeReferenceGrid(month, coarse,
                                [&](int c, int r) { return reference(month, c, r); });
        }
    }
    double referenceAt(int month, Point p) const {
        return static_cast<double>(
            reference(month, static_cast<int>(std::floor((p.x - coarse.xMin) / coarse.cellSize)),
                      static_cast<int>(std::floor((coarse.yMax - p.y) / coarse.cellSize))));
    }
    std::vector<Sample> ratios(int month) const {
        std::vector<Sample> samples;
        for (const Station& s : stations) {
            const double ratio = 2540 * stored(s, month) / referenceAt(month, {s.x, s.y});
            if (ratio >= 0 && ratio < 1000) samples.push_back({{s.x, s.y}, ratio});
        }
        return samples;
    }
    void expectPrism(int month, const SphericalModel& model, double share) {
        const Grid grid = f.output("PPT_" + GetMonthName(month));
        const auto samples = ratios(month);
        const auto [low, high] = range(grid);
        const GridGeometry& g = f.geometry();
        for (int r = 0; r < g.rows; ++r) {
            for (int c = 0; c < g.columns; ++c) {
                const Point at{g.columnCentre(c), g.rowCentre(r)};
                const double expected =
                    referenceAt(month, at) * test::plainKriging(samples, at, model) / 2540;
                ASSERT_NEAR(grid.at(c, r), expected, share * (high - low)) << c << " " << r;
            }
        }
    }
};

TEST_F(PrismChain, AgreesWithTheIndependentCalculation) {
    f.settings.BeginMonth = "Jan";
    f.settings.EndMonth = "Dec";
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    for (int month = 1; month <= 12; ++month) {
        const SurfaceDiagnostics& d =
            f.application.diagnosed()[static_cast<std::size_t>(month - 1)];
        expectPrism(month, d.semivariogram->model, 1e-6);
        if (month % 5 == 0) expectPrism(month, test::plainModel(ratios(month)), 5e-3);
    }
}

TEST_F(PrismChain, MessagesAndTheGridsOfTheMonths) {
    f.settings.PrismGridFolder = f.folder.file("ref01");
    f.settings.BeginMonth = "Sep";
    f.settings.EndMonth = "Nov";
    for (const int month : {1, 8, 12}) {
        std::filesystem::remove_all(
            f.folder.file(month == 12 ? "ref12" : "ref0" + std::to_string(month)));
    }
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_EQ(f.application.messages(),
              (std::vector<std::string>{
                  "Using PRISM GRID as reference to interpolate precipitation...",
                  "PPT Calculation for Sep is Over!", "PPT Calculation for Oct is Over!",
                  "PPT Calculation for Nov is Over!"}));
    const auto& layer = static_cast<const test::FakeLayer&>(*f.application.document().layers[2]);
    EXPECT_EQ(layer.name(), "PPT_Nov");
    EXPECT_EQ(layer.ramp.from, (Rgb{200, 50, 50}));
    EXPECT_NEAR(f.output("PPT_Oct").at(0, 0) / referenceAt(10, {400200, 4499800}) * 2540, 0.5, 0.5);
}

TEST_F(PrismChain, GridsMayBeFilesNamedWithoutTheirExtension) {
    ASSERT_TRUE(f.runPrecipitation());
    const Grid before = f.output("PPT_Jul");
    std::string rows;
    for (int r = 0; r < 8; ++r) {
        for (int c = 0; c < 11; ++c) rows += std::to_string(reference(7, c, r)) + " ";
        rows += "\n";
    }
    std::filesystem::remove_all(f.folder.file("ref07"));
    test::write(f.folder.file("ref07.asc"),
                "ncols 11\nnrows 8\nxllcorner 399000\nyllcorner 4489000\ncellsize 1500\n" + rows);
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    const Grid after = f.output("PPT_Jul");
    for (std::size_t i = 0; i < before.values.size(); ++i) {
        EXPECT_NEAR(after.values[i], before.values[i], 1e-4);
    }
}

TEST_F(PrismChain, GridsMayLieInAnotherSystem) {
    auto& systems = f.application.platform().spatialReferences();
    const std::string geographic = systems.createGeographic(4269);
    const GridGeometry degrees{80, 60, -112.3, 40.75, 0.005, geographic};
    const auto value = [](int c, int r) { return static_cast<float>(2540 + 20 * c + 9 * r); };
    f.makeReferenceGrid(6, degrees, value);
    f.makeReferenceGrid(7, degrees, value);
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    const auto at = [&](Point p) {
        const Point g = systems.project({p}, f.geometry().crs, geographic)[0];
        return static_cast<double>(value(static_cast<int>(std::floor((g.x + 112.3) / 0.005)),
                                         static_cast<int>(std::floor((40.75 - g.y) / 0.005))));
    };
    std::vector<Sample> samples;
    for (const Station& s : stations) {
        samples.push_back({{s.x, s.y}, 2540 * stored(s, 7) / at({s.x, s.y})});
    }
    const SphericalModel model = f.application.diagnosed()[1].semivariogram->model;
    const Grid grid = f.output("PPT_Jul");
    for (int c = 0; c < 37; ++c) {
        const Point p{f.geometry().columnCentre(c), f.geometry().rowCentre(4)};
        EXPECT_NEAR(grid.at(c, 4), at(p) * test::plainKriging(samples, p, model) / 2540, 1e-5);
    }
}

TEST_F(PrismChain, RatiosBelowZeroOrFromAThousandAreLeftOut) {
    weather = [](const std::string& p, const Station& s, int m) -> FieldValue {
        if (s.name == "S2") return -0.4;
        if (s.name == "S7") return 3000.0;
        if (s.name == "S9") return 0.0;  // a ratio of 0 counts
        return RunFixture::usualWeather(p, s, m);
    };
    makeWeather();
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_EQ(ratios(7).size(), 14U);
    EXPECT_EQ(f.application.diagnosed()[1].validStations, 14U);
    expectPrism(7, f.application.diagnosed()[1].semivariogram->model, 1e-6);
    // The field keeps the last month's ratios, those of stations left out too.
    EXPECT_EQ(std::get<double>(stationValue(9, "RefPPT")), 0);
    EXPECT_LT(std::get<double>(stationValue(2, "RefPPT")), 0);
    EXPECT_NEAR(std::get<double>(stationValue(0, "RefPPT")), ratios(7)[0].value, 1e-9);
}

TEST_F(PrismChain, AMonthWithoutRainIsAGridOfZero) {
    weather = zerosInJuly([](const Station&) { return true; });
    makeWeather();
    for (const bool reference : {true, false}) {  // also where the reference itself is 0
        f.makeReferenceGrid(7, coarse, [&](int, int) { return reference ? 900.0F : 0.0F; });
        ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
        const Grid july = f.output("PPT_Jul");
        for (int r = 0; r < july.geometry.rows; ++r) {
            for (int c = 0; c < july.geometry.columns; ++c) {
                EXPECT_EQ(july.at(c, r), hasData(c, r) ? 0 : kNoData);
            }
        }
        ASSERT_FALSE(f.application.prompts().notices.empty());
        EXPECT_EQ(f.application.prompts().notices.back(),
                  "PPT_Jul: all 15 stations with a value of weather.P_Jul hold 0, a month without "
                  "rain: the grid is 0 where the DEM has data");
    }
}

TEST_F(PrismChain, ZerosTakePartWhereTheReferenceIsNotZero) {
    weather = zerosInJuly([](const Station& s) { return s.name < "S13"; });
    makeWeather();
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_TRUE(f.application.prompts().notices.empty());
    EXPECT_EQ(f.application.diagnosed()[1].zeroStations, 0U);
    // Western cells without reference rain: their stations have no ratio.
    std::size_t dry = 0;
    for (const Station& s : stations) dry += s.name < "S13" && s.x < 399000 + 3 * 1500 ? 1U : 0U;
    ASSERT_GT(dry, 0U);
    f.makeReferenceGrid(7, coarse, [&](int c, int r) { return c < 3 ? 0.0F : reference(7, c, r); });
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_EQ(f.application.prompts().notices,
              std::vector<std::string>{"PPT_Jul: " + std::to_string(dry) +
                                       " of 15 stations hold 0 in field weather.P_Jul and take no "
                                       "part"});
}

TEST_F(PrismChain, ARatioOfAThousandIsLeftOut) {
    weather = [](const std::string& p, const Station& s, int m) -> FieldValue {
        if (m == 7 && s.name == "S7") return 100.0;  // 254000 over 254 is 1000
        if (m == 7 && s.name == "S11") return 99.9;  // a ratio of 999
        return RunFixture::usualWeather(p, s, m);
    };
    makeWeather();
    const auto isCellOf = [&](std::size_t i, int c, int r) {
        return coarse.columnAt(stations[i].x) == c && coarse.rowAt(stations[i].y) == r;
    };
    f.makeReferenceGrid(7, coarse, [&](int c, int r) {
        return isCellOf(7, c, r) || isCellOf(11, c, r) ? 254.0F : reference(7, c, r);
    });
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_EQ(std::get<double>(stationValue(7, "RefPPT")), 1000);
    const auto& excluded = f.application.diagnosed()[1].excluded;
    ASSERT_EQ(excluded.size(), 1U);
    EXPECT_EQ(excluded[0].station, "S7");
}

TEST_F(PrismChain, CellsAreNotCutAtZero) {
    const auto holdsStation = [&](int c, int r) {
        return std::ranges::any_of(stations, [&](const Station& s) {
            return coarse.columnAt(s.x) == c && coarse.rowAt(s.y) == r;
        });
    };
    f.makeReferenceGrid(7, coarse, [&](int c, int r) {
        return holdsStation(c, r) ? reference(7, c, r) : -reference(7, c, r);
    });
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    const Grid july = f.output("PPT_Jul");
    std::size_t negative = 0;
    for (int r = 0; r < july.geometry.rows; ++r) {
        for (int c = 0; c < july.geometry.columns; ++c) {
            const bool with = holdsStation(coarse.columnAt(july.geometry.columnCentre(c)),
                                           coarse.rowAt(july.geometry.rowCentre(r)));
            EXPECT_EQ(july.at(c, r) < 0, !with);
            negative += with ? 0U : 1U;
        }
    }
    EXPECT_GT(negative, 20U);
}

TEST_F(PrismChain, KeptValuesAreToldOnce) {
    coarse.columns = 8;
    for (const int month : {7, 8}) {
        f.makeReferenceGrid(month, coarse, [&](int c, int r) { return reference(month, c, r); });
    }
    f.settings.EndMonth = "Aug";
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_EQ(std::ranges::count_if(f.application.prompts().notices,
                                    [](const std::string& notice) {
                                        return notice.find("has no value at S") !=
                                               std::string::npos;
                                    }),
              1);
}

TEST_F(PrismChain, AStationWithoutReferenceIsLeftOutWhenItsFieldIsEmpty) {
    coarse.columns = 8;  // the eastern stations have no cell
    for (const int month : {6, 7}) {
        f.makeReferenceGrid(month, coarse, [&](int c, int r) { return reference(month, c, r); });
    }
    f.application.askForDiagnostics = true;
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    EXPECT_EQ(f.application.messages().size(), 3U) << f.allMessages();
    std::size_t within = 0;
    for (const Station& s : stations) within += s.x < 399000 + 8 * 1500 ? 1 : 0;
    ASSERT_LT(within, stations.size());
    EXPECT_EQ(f.application.diagnosed()[1].validStations, within);
    EXPECT_EQ(f.application.diagnosed()[1].excluded[0].reason,
              "has no ratio to the reference grid");
    EXPECT_EQ(f.output("PPT_Jul").at(36, 3), kNoData);
}

TEST_F(PrismChain, AStationWithoutReferenceKeepsWhatItsFieldHeld) {
    // June's grid covers all stations, July's lacks the eastern ones: they divide by June's ratio.
    coarse.columns = 8;
    f.makeReferenceGrid(7, coarse, [&](int c, int r) { return reference(7, c, r); });
    ASSERT_TRUE(f.runPrecipitation()) << f.allMessages();
    std::string told;
    for (const std::string& notice : f.application.prompts().notices) told += notice + "\n";
    EXPECT_NE(told.find("has no value at S"), std::string::npos) << told;
    for (std::size_t i = 0; i < stations.size(); ++i) {
        const Station& s = stations[i];
        if (s.x < 399000 + 8 * 1500) continue;
        const double june = 2540 * stored(s, 6) / referenceAt(6, {s.x, s.y});
        EXPECT_NEAR(std::get<double>(stationValue(i, "RefPPT")), 2540 * stored(s, 7) / june, 1e-6);
        const std::string held = s.name + " (" + numberText(june).substr(0, 6);
        EXPECT_NE(told.find(held), std::string::npos) << held << ": " << told;
    }
}

}  // namespace
}  // namespace velmora
