// SPDX-License-Identifier: MIT
// What a reference ET run tells, records and marks of cells that no physics allows and no station
// bears out, against a plain look at its own grids.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "gis/quality_note.h"
#include "modelling/quality.h"
#include "refet/refet_run.h"
#include "tests/support/memory_fixtures.h"
#include "tests/support/run_fixture.h"

namespace velmora {
namespace {

using test::RunDomain;
using test::Station;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

struct QualityOfRuns : testing::Test {
    test::MemoryRun f;

    const std::vector<std::string>& notices() { return f.application.prompts().notices; }
    void run() { EXPECT_TRUE(f.run()) << f.allMessages(); }
    std::vector<QualityNote> notes() { return f.world.platform.journal().runs.back().quality; }
    const QualityNote::Flag* flagOf(const QualityNote& note, QualityFlag flag) {
        const auto found = std::ranges::find(note.flags, bitOf(flag), &QualityNote::Flag::bit);
        return found == note.flags.end() ? nullptr : &*found;
    }
    // Within the stations' range, so that nothing is extrapolated.
    void makeLowland() {
        f.makeDem([](int column, int row) {
            return column == 5 && row == 7 ? kNoData
                                           : static_cast<float>(1310 + 10 * column + 7 * row);
        });
    }
    // Values that another surface replaces.
    void makeWeather(const std::string& of, const std::function<double(const Station&)>& value) {
        f.makeWeather(RunDomain::stations(), [&](const std::string& p, const Station& s, int m) {
            return p == of ? FieldValue(value(s)) : RunDomain::usualWeather(p, s, m);
        });
    }
    struct Plain {
        std::size_t cells = 0, flagged = 0, column = 0, row = 0;
        double worst = 0;
    };
    // badness(name -> value) above 0 is a flag.
    template <class Badness>
    Plain plainly(Badness badness) {
        std::map<std::string, Grid> grids;
        Plain found;
        const GridGeometry& g = f.geometry();
        for (int c = 0; c < g.columns; ++c) {
            for (int r = 0; r < g.rows; ++r) {
                const auto at = [&](const std::string& name) {
                    if (!grids.contains(name)) grids.emplace(name, f.output(name));
                    return static_cast<double>(grids.at(name).at(c, r));
                };
                if (at("NewDEM") == static_cast<double>(kNoData)) continue;
                ++found.cells;
                const double bad = badness(at);
                if (bad <= 0) continue;
                ++found.flagged;
                if (bad <= found.worst) continue;
                found.worst = bad;
                found.column = static_cast<std::size_t>(c) + 1;
                found.row = static_cast<std::size_t>(r) + 1;
            }
        }
        return found;
    }
    void expect(QualityFlag flag, const Plain& plain, double worst) {
        ASSERT_GT(plain.flagged, 0U);
        const auto all = notes();
        ASSERT_FALSE(all.empty());
        const QualityNote::Flag* told = flagOf(all.front(), flag);
        ASSERT_NE(told, nullptr);
        EXPECT_EQ(all.front().cells, plain.cells);
        EXPECT_EQ(told->cells, plain.flagged);
        EXPECT_DOUBLE_EQ(told->share,
                         static_cast<double>(plain.flagged) / static_cast<double>(plain.cells));
        ASSERT_TRUE(told->worst);
        EXPECT_NEAR(told->worst->value, worst, 1e-5);
        EXPECT_EQ(told->worst->column, plain.column);
        EXPECT_EQ(told->worst->row, plain.row);
        EXPECT_THAT(notices(), Contains(AllOf(StartsWith("RefET_Jun_"),
                                              HasSubstr(std::string(textOf(flag).text)))));
    }
};

TEST_F(QualityOfRuns, NothingIsToldOfGoodMonths) {
    makeLowland();
    run();
    EXPECT_THAT(notices(), IsEmpty());
    ASSERT_EQ(notes().size(), 2U);
    EXPECT_EQ(notes().front().grid, "RefET_Jun_2");
    EXPECT_EQ(notes().front().month, "Jun");
    EXPECT_EQ(notes().front().cells, 37U * 21U - 1);
    EXPECT_THAT(notes().front().flags, IsEmpty());
    EXPECT_FALSE(f.hasOutput("QA_Jun_2"));
}

TEST_F(QualityOfRuns, NegativeEtAndDewPoints) {
    makeLowland();
    makeWeather("TD_", [](const Station& s) { return 27 + (s.x - 400000) / 3000; });
    run();
    const Plain negative = plainly([](auto at) { return -at("RefET_Jun_2"); });
    expect(QualityFlag::negativeEt, negative, -negative.worst);
    const Plain mean =
        plainly([](auto at) { return at("TD_Jun") - (at("TM_Jun") + at("TN_Jun")) / 2; });
    expect(QualityFlag::dewPointAboveMean, mean, mean.worst);
    const Plain most = plainly([](auto at) { return at("TD_Jun") - at("TM_Jun"); });
    expect(QualityFlag::dewPointAboveMaximum, most, most.worst);
    EXPECT_EQ(notices().size(), 2U);  // one line a month
}

TEST_F(QualityOfRuns, MaximumBelowMinimumByATemperatureMethod) {
    f.settings.RefETMethod = "4";
    makeLowland();
    makeWeather("TN_", [](const Station& s) { return 15 + (s.x - 400000) / 900; });
    run();
    const Plain below = plainly([](auto at) { return at("TN_Jun") - at("TM_Jun"); });
    expect(QualityFlag::maximumBelowMinimum, below, below.worst);
}

TEST_F(QualityOfRuns, RadiationOfNoSky) {
    makeLowland();
    makeWeather("SR_", [](const Station& s) { return s.x < 405000 ? 60 : 3; });
    run();
    const auto month = notes().front();
    ASSERT_NE(flagOf(month, QualityFlag::radiationAboveExtraterrestrial), nullptr);
    ASSERT_NE(flagOf(month, QualityFlag::radiationLow), nullptr);
    // 41.7 MJ/m2/day in June at 40.6 N
    const Plain above = plainly([](auto at) { return at("SR_Jun") - 41.7; });
    EXPECT_NEAR(flagOf(month, QualityFlag::radiationAboveExtraterrestrial)->worst->value,
                above.worst, 0.3);
    EXPECT_NEAR(flagOf(month, QualityFlag::radiationLow)->worst->value, 3 / 41.7, 2e-3);
}

TEST_F(QualityOfRuns, ElevationsBeyondTheStationsAreToldOnce) {
    run();
    double lowest = 1e9;
    double highest = 0;
    for (const Station& s : RunDomain::stations()) {
        lowest = std::min(lowest, s.elevation);
        highest = std::max(highest, s.elevation);
    }
    const Plain beyond =
        plainly([&](auto at) { return std::max(lowest - at("NewDEM"), at("NewDEM") - highest); });
    expect(QualityFlag::elevationBeyondStations, beyond, beyond.worst);
    EXPECT_NE(flagOf(notes().back(), QualityFlag::elevationBeyondStations), nullptr);
    EXPECT_EQ(notices().size(), 1U);
}

TEST_F(QualityOfRuns, ATrendOfChanceIsNamedWhereItIsExtrapolated) {
    const auto chance = [](const Station& s) { return 3 + (std::stoi(s.name.substr(1)) % 2); };
    makeWeather("TD_", chance);
    run();
    const auto month = notes().front();
    const auto* told = flagOf(month, QualityFlag::trendNotSignificant);
    ASSERT_NE(told, nullptr);
    EXPECT_THAT(told->surfaces, ElementsAre("TD_Jun"));
    EXPECT_EQ(told->cells, flagOf(month, QualityFlag::elevationBeyondStations)->cells);
    EXPECT_THAT(notices(),
                Contains(HasSubstr("not significant and extrapolated in TD_Jun (by up")));
    for (const SurfaceNote& note : f.world.platform.journal().runs.back().surfaces) {
        if (!note.trend) continue;
        ASSERT_TRUE(note.slopeProbability) << note.surface;
        EXPECT_EQ(*note.slopeProbability > 0.05, note.surface.starts_with("TD_")) << note.surface;
        EXPECT_EQ(note.lowest, 1300);
        EXPECT_EQ(note.highest, 1300 + 57 * 15);
    }
    makeLowland();
    run();
    EXPECT_EQ(flagOf(notes().front(), QualityFlag::trendNotSignificant), nullptr);
}

TEST_F(QualityOfRuns, CellsFarFromTheStations) {
    makeLowland();
    auto stations = RunDomain::stations();
    for (Station& s : stations) s.x -= 56000;
    f.makeStations(stations);
    f.makeWeather(stations, [](const std::string& p, Station s, int m) {
        s.x += 56000;
        return RunDomain::usualWeather(p, s, m);
    });
    run();
    const Plain far = plainly([&, k = 0](auto /*at*/) mutable {
        // Cells come column by column, those without data too late to be asked for.
        k += k == 5 * 21 + 7 ? 1 : 0;
        double least = 1e30;
        for (const Station& s : stations) {
            least = std::min(least, std::hypot(s.x - f.geometry().columnCentre(k / 21),
                                               s.y - f.geometry().rowCentre(k % 21)));
        }
        ++k;
        return least > 50'000 ? least : 0;
    });
    ASSERT_LT(far.flagged, far.cells);
    expect(QualityFlag::farFromStations, far, far.worst / 1000);
}

TEST_F(QualityOfRuns, EstimatesAndHeatFluxAreRecordedAndMarked) {
    makeLowland();
    f.application.askForQualityGrids = true;
    f.settings.HasTdew = f.settings.HasSR = f.settings.HasWS = false;
    f.makeWeather(RunDomain::stations(),
                  [](const std::string& p, const Station& s, int m) -> FieldValue {
                      if (m < 6 || m > 7) return {};
                      return RunDomain::usualWeather(p, s, m);
                  });
    run();
    const auto month = notes().front();
    unsigned all = 0;
    for (const QualityFlag flag : {QualityFlag::dewPointEstimated, QualityFlag::radiationEstimated,
                                   QualityFlag::windEstimated, QualityFlag::heatFluxTakenAsZero}) {
        const auto* told = flagOf(month, flag);
        ASSERT_NE(told, nullptr) << textOf(flag).text;
        EXPECT_EQ(told->cells, month.cells);
        EXPECT_EQ(told->share, 1);
        all += bitOf(flag);
    }
    EXPECT_EQ(static_cast<double>(f.output("QA_Jun_2").at(0, 0)), all);
    for (const char* name : {"Jun", "Jul"}) {
        EXPECT_THAT(notices(), Contains(AllOf(StartsWith(std::string("RefET_") + name),
                                              EndsWith("soil heat flux taken as 0"))));
    }
}

TEST_F(QualityOfRuns, GridsOfFlagsHoldTheSumsOfTheirBits) {
    makeWeather("TD_", [](const Station& s) { return 27 + (s.x - 400000) / 3000; });
    run();
    const Grid without = f.output("RefET_Jun_2");
    f.application.askForQualityGrids = true;
    run();
    EXPECT_EQ(f.output("RefET_Jun_2").values, without.values);
    const Grid marks = f.output("QA_Jun_2");
    std::map<unsigned, std::size_t> counts;
    for (const float mark : marks.values) {
        if (mark == kNoData) continue;
        for (unsigned bit = 1; bit < 1U << kQualityFlags; bit <<= 1) {
            if (static_cast<unsigned>(mark) & bit) ++counts[bit];
        }
    }
    const auto month = notes().front();
    EXPECT_EQ(counts.size(), month.flags.size());
    EXPECT_GE(month.flags.size(), 4U);
    for (const QualityNote::Flag& flag : month.flags) {
        EXPECT_EQ(counts[flag.bit], flag.cells) << flag.flag;
    }
    EXPECT_EQ(marks.at(5, 7), kNoData);
    EXPECT_TRUE(f.hasOutput("QA_Jul_2"));
    EXPECT_EQ(productOf("QA_Jul_2"), nullptr);  // which no step reads
}

// The same by the real platform with its threads.
TEST_F(QualityOfRuns, CountsAreThoseOfThePlatformInMemory) {
    test::RunFixture disk;
    disk.application.askForQualityGrids = f.application.askForQualityGrids = true;
    EXPECT_TRUE(disk.run()) << disk.allMessages();
    run();
    EXPECT_EQ(disk.output("QA_Jun_2").values, f.output("QA_Jun_2").values);
    EXPECT_EQ(disk.application.prompts().notices, notices());
}

// A document that has no room for the grids of flags.
class NoRoomForFlags : public test::FakeDocument {
  public:
    std::unique_ptr<IRasterLayer> createRasterLayer(const std::string& path) override {
        if (path.find("QA_Jun") != std::string::npos) throw PlatformError("no room");
        return FakeDocument::createRasterLayer(path);
    }
};
class FullApplication : public test::TestApplication {
  public:
    using TestApplication::TestApplication;
    NoRoomForFlags& document() override { return document_; }

  private:
    NoRoomForFlags document_;
};

TEST_F(QualityOfRuns, WhatCannotBeMadeFailsTheRunButStopsNothing) {
    FullApplication application(f.world.platform, f.folder.file("settings"));
    application.askForQualityGrids = true;
    EXPECT_FALSE(ReferenceEtRun(application, f.settings).run());
    EXPECT_THAT(application.messages(), Contains("QA_Jun_2: no room"));
    EXPECT_TRUE(f.hasOutput("QA_Jul_2"));
    EXPECT_THAT(application.messages(), Contains(StartsWith("Time for estimating")));
}

}  // namespace
}  // namespace velmora
