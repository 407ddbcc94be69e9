// SPDX-License-Identifier: MIT
// Reference ET by the papers' choices beside that of the method: against a plain calculation from
// the surfaces of the run, and without a trace in what the run makes anyhow.
#include "refet/standard_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <locale>
#include <numbers>
#include <sstream>

#include "gis/errors.h"
#include "gis/month_names.h"
#include "refet/refet_run.h"
#include "tests/support/run_fixture.h"

namespace velmora {
namespace {

using test::RunFixture;
using test::Station;
using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

struct StandardGrids : testing::Test {
    RunFixture f;
    std::vector<double> latitudes;

    StandardGrids() {
        auto& systems = f.application.platform().spatialReferences();
        const GridGeometry& g = f.geometry();
        std::vector<Point> edge;
        for (int r = 0; r < g.rows; ++r) edge.push_back({g.xMin, g.rowCentre(r)});
        for (const Point& p : systems.project(edge, g.crs, systems.createGeographic(4269))) {
            latitudes.push_back(p.y);
        }
    }
    void runFor(const std::string& method, const std::string& begin, const std::string& end) {
        f.settings.RefETMethod = method;
        f.settings.BeginMonth = begin;
        f.settings.EndMonth = end;
        EXPECT_TRUE(f.run()) << f.allMessages();
    }
    void runStandard(const std::string& method, const std::string& begin, const std::string& end) {
        f.application.askForStandardRun = true;
        runFor(method, begin, end);
    }
    std::vector<FieldValue> stored(const std::string& field) {
        std::vector<FieldValue> values;
        const auto records = f.application.platform()
                                 .connections()
                                 .open("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" +
                                       f.folder.file("out/GridOP.mdb"))
                                 ->open("Select * from GGG");
        for (; !records->eof(); records->moveNext()) values.push_back(records->value(field));
        return values;
    }
};

// The surfaces of a run, a cell at a time.
class Surfaces {
  public:
    explicit Surfaces(RunFixture& f) : f_(f) {}
    double at(const std::string& name, int c, int r) {
        if (!grids_.contains(name)) grids_.emplace(name, f_.output(name));
        return static_cast<double>(grids_.at(name).at(c, r));
    }
    double mean(int month, int c, int r) {
        return (at("TM_" + GetMonthName(month), c, r) + at("TN_" + GetMonthName(month), c, r)) / 2;
    }

  private:
    RunFixture& f_;
    std::map<std::string, Grid> grids_;
};

double e0(double T) { return 0.6108 * std::exp(17.27 * T / (T + 237.3)); }

// By the papers, 2006: a common year of 365 days and a February of 28.
double radiation(double latitude, int month, int day) {
    const int before[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
    const double angle = 2 * std::numbers::pi * (before[month - 1] + day) / 365;
    const double phi = latitude * std::numbers::pi / 180;
    const double delta = 0.409 * std::sin(angle - 1.39);
    const double omega = std::acos(-std::tan(phi) * std::tan(delta));
    return 24 / std::numbers::pi * 4.92 * (1 + 0.033 * std::cos(angle)) *
           (omega * std::sin(phi) * std::sin(delta) +
            std::cos(phi) * std::cos(delta) * std::sin(omega));
}

constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

double papers(Surfaces& s, int method, int month, double latitude, double G, int c, int r) {
    const std::string m = GetMonthName(month);
    const double TM = s.at("TM_" + m, c, r);
    const double TN = s.at("TN_" + m, c, r);
    const double T = (TM + TN) / 2;
    const int days = kDays[month - 1];
    const double Ra = radiation(latitude, month, (days + 1) / 2);
    if (method == 4) {
        return days * 0.0023 * std::sqrt(TM - TN) * (T + 17.8) * Ra / (2.501 - 0.002361 * T) / 25.4;
    }
    const double z = s.at("NewDEM", c, r);
    const double ea = e0(s.at("TD_" + m, c, r));
    const double Rs = s.at("SR_" + m, c, r);
    const double clear = std::clamp(Rs / ((0.75 + 2e-5 * z) * Ra), 0.3, 1.0);
    const double Rn = 0.77 * Rs - (1.35 * clear - 0.35) * (0.34 - 0.14 * std::sqrt(ea)) * 4.901e-9 *
                                      (std::pow(TM + 273.16, 4) + std::pow(TN + 273.16, 4)) / 2;
    const double slope = 2504 * std::exp(17.27 * T / (T + 237.3)) / std::pow(T + 237.3, 2);
    const double gamma = 0.000665 * 101.3 * std::pow((293 - 0.0065 * z) / 293, 5.26);
    if (method == 6) {
        return std::max(0.0, days * 1.26 * slope / (slope + gamma) * (Rn - G) / 2.45 / 25.4);
    }
    const double Cn = method == 1 ? 1600 : 900;
    const double Cd = method == 1 ? 0.38 : 0.34;
    const double u = s.at("WS_" + m, c, r);
    return std::max(0.0, days *
                             (0.408 * slope * (Rn - G) +
                              gamma * Cn / (T + 273) * u * ((e0(TM) + e0(TN)) / 2 - ea)) /
                             (slope + gamma * (1 + Cd * u)) / 25.4);
}

TEST_F(StandardGrids, AreThePapersEquationsOfTheRunsSurfaces) {
    for (const int method : {1, 2, 3, 4, 6}) {
        runStandard(std::to_string(method), "Jan", "Dec");
        Surfaces s(f);
        for (const int month : {1, 2, 6, 10, 12}) {
            const Grid grid =
                f.output("RefETstd_" + GetMonthName(month) + "_" + std::to_string(method));
            for (const auto& [c, r] : {std::pair{0, 0}, {17, 9}, {36, 20}}) {
                const double G =
                    0.07 * (s.mean(month % 12 + 1, c, r) - s.mean((month + 10) % 12 + 1, c, r));
                const double expected =
                    papers(s, method, month, latitudes[static_cast<std::size_t>(r)], G, c, r);
                EXPECT_NEAR(static_cast<double>(grid.at(c, r)), expected,
                            2e-6 * std::max(1.0, expected))
                    << method << " " << month;
            }
            EXPECT_EQ(grid.at(5, 7), kNoData);
        }
    }
}

TEST_F(StandardGrids, LeaveEverythingElseAsItIs) {
    runFor("2", "Jan", "Mar");
    const auto february = f.output("RefET_Feb_2").values;
    std::vector<std::vector<FieldValue>> fields;
    for (const char* field : {"GG", "SA", "SR", "RefET", "TM"}) fields.push_back(stored(field));
    const auto messages = f.application.messages();
    const auto lines = f.monitor.messages;
    EXPECT_FALSE(f.hasOutput("RefETstd_Feb_2"));
    EXPECT_THAT(f.application.prompts().notices,
                Not(Contains(HasSubstr("by the papers' choices"))));

    f.application.prompts().messages.clear();
    f.monitor.messages.clear();
    runStandard("2", "Jan", "Mar");
    EXPECT_TRUE(f.hasOutput("RefETstd_Feb_2"));
    EXPECT_EQ(f.output("RefET_Feb_2").values, february);
    std::size_t k = 0;
    for (const char* field : {"GG", "SA", "SR", "RefET", "TM"}) {
        EXPECT_EQ(stored(field), fields[k++]) << field;
    }
    EXPECT_EQ(f.application.messages(), messages);
    EXPECT_EQ(f.monitor.messages, lines);
}

TEST_F(StandardGrids, EstimatesAreMadeWithThePapersSunAndPutBack) {
    f.settings.HasSR = false;
    runFor("2", "Oct", "Oct");
    const auto SR = stored("SR");
    const auto SA = stored("SA");
    const auto ours = f.output("RefET_Oct_2").values;
    runStandard("2", "Oct", "Oct");
    EXPECT_EQ(stored("SR"), SR);
    EXPECT_EQ(stored("SA"), SA);
    EXPECT_EQ(f.output("RefET_Oct_2").values, ours);
    Surfaces s(f);
    const int r = 9;
    const double Ra = radiation(latitudes[r], 10, 16);
    const double TM = s.at("TM_Oct", 17, r);
    const double TN = s.at("TN_Oct", 17, r);
    const double withOurSun = std::get<double>(SR[17 * 21 + r]);
    const double withTheirs = 0.16 * std::sqrt(TM - TN) * Ra;
    EXPECT_GT(withOurSun / withTheirs, 1.005);  // 366 days in October
    EXPECT_NE(f.output("RefETstd_Oct_2").values, ours);
}

// July and August alone, with the neighbours that the weather table has.
TEST_F(StandardGrids, TheHeatFluxTakesTheMonthBeforeWhereThatAfterIsMissing) {
    f.makeWeather(RunFixture::stations(),
                  [](const std::string& p, const Station& s, int m) -> FieldValue {
                      if (m < 6 || m > 8) return {};
                      return RunFixture::usualWeather(p, s, m);
                  });
    runStandard("2", "Jul", "Aug");
    Surfaces s(f);
    const auto expected = [&](int month, double G) {
        return papers(s, 2, month, latitudes[9], G, 17, 9);
    };
    const auto mean = [&](int month) { return s.mean(month, 17, 9); };
    EXPECT_NEAR(static_cast<double>(f.output("RefETstd_Jul_2").at(17, 9)),
                expected(7, 0.07 * (mean(8) - mean(6))), 2e-5);
    EXPECT_NEAR(static_cast<double>(f.output("RefETstd_Aug_2").at(17, 9)),
                expected(8, 0.14 * (mean(8) - mean(7))), 2e-5);
    EXPECT_THAT(f.application.prompts().notices,
                Not(Contains(HasSubstr("takes the soil heat flux as 0"))));
}

TEST_F(StandardGrids, TheHeatFluxIsZeroWithoutTheMonthBefore) {
    runStandard("2", "Jan", "Feb");  // without a surface of December
    Surfaces s(f);
    EXPECT_NEAR(static_cast<double>(f.output("RefETstd_Jan_2").at(17, 9)),
                papers(s, 2, 1, latitudes[9], 0, 17, 9), 2e-5);
    EXPECT_THAT(f.application.prompts().notices,
                Contains("RefETstd_Jan_2 takes the soil heat flux as 0: the run has no "
                         "temperatures of Dec"));
}

TEST_F(StandardGrids, TheirMeansAreTold) {
    runStandard("4", "Oct", "Oct");
    const auto meanOf = [&](const std::string& name) {
        double sum = 0;
        double count = 0;
        for (const float value : f.output(name).values) {
            if (value == kNoData) continue;
            sum += static_cast<double>(value);
            ++count;
        }
        return sum / count;
    };
    const double ours = meanOf("RefET_Oct_4");
    const double theirs = meanOf("RefETstd_Oct_4");
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::fixed << std::setprecision(3) << "mean is " << theirs << " inches, "
         << theirs - ours << " (" << std::setprecision(1) << 100 * (theirs / ours - 1)
         << " %) against RefET_Oct_4";
    EXPECT_LT(theirs, ours);
    EXPECT_THAT(f.application.prompts().notices,
                Contains(AllOf(StartsWith("RefETstd_Oct_4: "), EndsWith(text.str()))));
}

TEST_F(StandardGrids, BlaneyCriddleHasItsFloor) {
    f.makeWeather(
        RunFixture::stations(), [](const std::string& p, const Station& s, int m) -> FieldValue {
            const double v = std::get<double>(RunFixture::usualWeather(p, s, m));
            return m == 1 ? v - std::get<double>(RunFixture::usualWeather("TM_", s, m)) - 2 : v;
        });
    runStandard("5", "Jan", "Jan");
    Surfaces s(f);
    const double F = s.mean(1, 17, 9) * 1.8 + 32;
    ASSERT_LT(F, 34);
    ASSERT_GT(F, 0);
    const double ours = static_cast<double>(f.output("RefET_Jan_5").at(17, 9));
    EXPECT_NEAR(static_cast<double>(f.output("RefETstd_Jan_5").at(17, 9)),
                ours / (0.0173 * F - 0.314) * 0.30, 1e-5);
}

// A document that has no room for the papers' grids.
class NoRoomForThem : public test::FakeDocument {
  public:
    std::unique_ptr<IRasterLayer> createRasterLayer(const std::string& path) override {
        if (path.find("RefETstd_Jun") != std::string::npos) throw PlatformError("no room");
        return FakeDocument::createRasterLayer(path);
    }
};
class FullApplication : public test::TestApplication {
  public:
    using TestApplication::TestApplication;
    NoRoomForThem& document() override { return document_; }

  private:
    NoRoomForThem document_;
};

TEST_F(StandardGrids, WhatCannotBeMadeFailsTheRunButStopsNothing) {
    FullApplication application(f.world.platform, f.folder.file("settings"));
    application.askForStandardRun = true;
    EXPECT_FALSE(ReferenceEtRun(application, f.settings).run());
    EXPECT_THAT(application.messages(), Contains("RefETstd_Jun_2: no room"));
    EXPECT_TRUE(f.hasOutput("RefET_Jul_2"));
    EXPECT_TRUE(f.hasOutput("RefETstd_Jul_2"));
    EXPECT_THAT(application.messages(), Contains(StartsWith("Time for estimating")));
}

TEST_F(StandardGrids, BelongToNoProductSoThatNoStepReadsThem) {
    EXPECT_EQ(productOf("RefETstd_Jul_2"), nullptr);
}

}  // namespace
}  // namespace velmora
