// SPDX-License-Identifier: MIT
// Rules of a reference ET run that its numbers alone do not show: which values and inputs take
// part, what is said, and what a failure in the middle of a run does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "refet/refet_run.h"
#include "settings/run_state.h"
#include "tests/support/run_fixture.h"

namespace velmora {
namespace {

using test::RunFixture;
using test::Station;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::vector<std::string> kAllPrefixes = {"TM_", "TN_", "TD_", "SR_", "WS_", "TA_"};

// Does something when the run says a line.
class WatchingMonitor : public test::RecordingMonitor {
  public:
    WatchingMonitor(std::string line, std::function<void()> act)
        : line_(std::move(line)), act_(std::move(act)) {}
    void messageChanged(const std::string& text) override {
        RecordingMonitor::messageChanged(text);
        if (text == line_) act_();
    }

  private:
    std::string line_;
    std::function<void()> act_;
};

const char* const kJuneIsDone = "Reference ET in Junare estimated successfully ...";

struct RefEtRules : testing::Test {
    RunFixture f;

    // A surface of July when station S2 has this value of a quantity, null for none.
    Grid surfaceWith(const std::string& prefix, const FieldValue& value) {
        f.settings.BeginMonth = f.settings.EndMonth = "Jul";
        const bool fahrenheit = f.settings.TemperatureUnit == "Degree F";
        f.makeWeather(RunFixture::stations(),
                      [&](const std::string& p, const Station& s, int m) -> FieldValue {
                          if (p == prefix && s.name == "S2" && m == 7) return value;
                          const double v = std::get<double>(RunFixture::usualWeather(p, s, m));
                          return fahrenheit && p[0] == 'T' ? v * 9 / 5 + 32 : v;
                      });
        EXPECT_TRUE(f.run()) << f.allMessages();
        return f.output(prefix + "Jul");
    }
    bool takesPart(const std::string& prefix, double value) {
        const Grid without = surfaceWith(prefix, {});
        return surfaceWith(prefix, value).values != without.values;
    }
    // A run of June and July in which `act` happens when June is done.
    bool runWith(const std::function<void()>& act) {
        WatchingMonitor monitor(kJuneIsDone, act);
        const Listening listening(f.application.feedback(), monitor);
        const bool done = ReferenceEtRun(f.application, f.settings).run();
        lines = monitor.messages;
        return done;
    }
    void removeOutput(const std::string& name) {
        std::filesystem::remove_all(f.folder.file("out/" + name));
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
    long told(const std::string& part) {
        auto& prompts = f.application.prompts();
        const auto has = [&](const std::string& text) {
            return text.find(part) != std::string::npos;
        };
        return std::ranges::count_if(prompts.messages, has) +
               std::ranges::count_if(prompts.notices, has);
    }
    std::vector<std::string> lines;
};

TEST_F(RefEtRules, FahrenheitCountsBetween0And150) {
    f.settings.TemperatureUnit = "Degree F";
    for (const double outside : {-3.0, 0.0, 150.0, 180.0}) {
        EXPECT_FALSE(takesPart("TM_", outside)) << outside;
    }
    for (const double inside : {0.01, 149.99}) EXPECT_TRUE(takesPart("TM_", inside)) << inside;
}

TEST_F(RefEtRules, CelsiusCountsBetweenMinus20And80) {
    for (const double outside : {-20.0, 80.0}) EXPECT_FALSE(takesPart("TN_", outside)) << outside;
    for (const double inside : {-19.999, 79.995}) EXPECT_TRUE(takesPart("TN_", inside)) << inside;
}

TEST_F(RefEtRules, WindAndRadiationCountBetween0And500) {
    for (const char* prefix : {"WS_", "SR_"}) {
        for (const double outside : {0.0, 500.0}) EXPECT_FALSE(takesPart(prefix, outside));
        for (const double inside : {0.001, 499.99}) EXPECT_TRUE(takesPart(prefix, inside));
    }
}

TEST_F(RefEtRules, TheDemsOwnUnitDecidesAboutItsFeet) {
    f.settings.DemUnit = "Feet";
    ASSERT_TRUE(f.run()) << f.allMessages();
    EXPECT_NEAR(f.output("NewDEM").at(10, 3), 1661 * 0.3048, 1e-3);
    f.settings.DemUnit = "Meters";
    f.settings.SiteElevationUnit = "Feet";
    ASSERT_TRUE(f.run()) << f.allMessages();
    EXPECT_EQ(f.output("NewDEM").at(10, 3), 1661);
}

TEST_F(RefEtRules, AFootIs3048TenThousandthsOfAMetre) {
    auto inFeet = RunFixture::stations();
    for (Station& s : inFeet) s.elevation = std::round(s.elevation / 0.3048 * 100) / 100;
    f.makeStations(inFeet);
    f.makeWeather(RunFixture::stations(),
                  [](const std::string& p, const Station& s, int) -> FieldValue {
                      return p[0] == 'T' ? 30 - 0.0065 * s.elevation : 5.0;
                  });
    f.settings.SiteElevationUnit = "Feet";
    ASSERT_TRUE(f.run()) << f.allMessages();
    const Grid surface = f.output("TM_Jul");
    EXPECT_NEAR(surface.at(10, 3), 30 - 0.0065 * 1661, 3e-4);
    EXPECT_NEAR(surface.at(36, 20), 30 - 0.0065 * 2756, 3e-4);  // far above the stations
    EXPECT_NEAR(surface.at(0, 0), 30 - 0.0065 * 1300, 3e-4);
}

TEST_F(RefEtRules, AQuantityIsUsedWhenItsFlagSaysSo) {
    f.makeWeather(RunFixture::stations(), RunFixture::usualWeather, kAllPrefixes);
    auto& s = f.settings;
    s.BeginMonth = "Jul";
    const std::array<std::pair<const char*, bool*>, 4> flags = {{{"TD_Jul", &s.HasTdew},
                                                                 {"SR_Jul", &s.HasSR},
                                                                 {"WS_Jul", &s.HasWS},
                                                                 {"TA_Jul", &s.HasTmean}}};
    for (const auto& [chosen, flag] : flags) {
        for (const auto& [name, other] : flags) {
            *other = other == flag;
            removeOutput(name);
        }
        ASSERT_TRUE(f.run()) << f.allMessages();
        for (const auto& [name, other] : flags) EXPECT_EQ(f.hasOutput(name), other == flag) << name;
    }
}

TEST_F(RefEtRules, MethodsFourAndFiveUseTemperaturesAlone) {
    f.makeWeather(RunFixture::stations(), RunFixture::usualWeather, kAllPrefixes);
    f.settings.HasTmean = true;
    for (const char* method : {"4", "5"}) {
        f.settings.RefETMethod = method;
        for (const char* name : {"TD_Jul", "SR_Jul", "WS_Jul", "TA_Jul"}) removeOutput(name);
        ASSERT_TRUE(f.run()) << f.allMessages();
        EXPECT_TRUE(f.hasOutput("TM_Jul") && f.hasOutput("TN_Jul") && f.hasOutput("TA_Jul"));
        for (const char* name : {"TD_Jul", "SR_Jul", "WS_Jul"}) EXPECT_FALSE(f.hasOutput(name));
    }
}

TEST_F(RefEtRules, EachMethodHasItsLine) {
    const std::array<const char*, 6> expected = {
        "use ASCE Std  Penman-Monteith (Tall Crop: Alfalfa) ...",
        "use ASCE Std  Penman-Monteith (Short Crop: Grass) ...",
        "use FAO56  Penman-Monteith (Grass) ...",
        "use Hargreaves Temperature Method 1985(Grass) ...",
        "use SCS Modified Blaney-Criddle ...",
        "use Priestley-Taylor  ..."};
    f.settings.BeginMonth = "Jul";
    for (std::size_t method = 0; method < expected.size(); ++method) {
        f.settings.RefETMethod = std::to_string(method + 1);
        f.monitor.messages.clear();
        ASSERT_TRUE(f.run()) << f.allMessages();
        EXPECT_THAT(f.monitor.messages, Contains(expected[method]));
        EXPECT_EQ(std::ranges::count_if(f.monitor.messages,
                                        [](const auto& line) { return line.starts_with("use "); }),
                  1);
    }
}

TEST_F(RefEtRules, AWeatherGridThatIsGoneStopsTheRunWithoutABox) {
    EXPECT_FALSE(runWith([&] { removeOutput("TM_Jul"); }));
    EXPECT_FALSE(processState().runStatus);
    EXPECT_TRUE(f.application.messages().empty()) << f.allMessages();
    EXPECT_THAT(f.application.prompts().reasons, Contains(HasSubstr("TM_Jul")));
    EXPECT_TRUE(f.hasOutput("RefET_Jun_2"));
    EXPECT_FALSE(f.hasOutput("RefET_Jul_2"));
    EXPECT_EQ(lines.back(), kJuneIsDone);
}

TEST_F(RefEtRules, TheWorkDatabaseIsStoredAfterAFailureToo) {
    EXPECT_FALSE(runWith([&] { removeOutput("TM_Jul"); }));
    const auto results = stored("RefET");
    ASSERT_EQ(results.size(), 37U * 21U);
    const Grid june = f.output("RefET_Jun_2");
    EXPECT_EQ(static_cast<float>(std::get<double>(results[0])), june.at(0, 0));
}

TEST_F(RefEtRules, AGridThatDoesNotFitIsToldByGridReadIn) {
    runWith([&] {
        const GridGeometry small{5, 4, 400000, 4500000, 400, f.geometry().crs};
        removeOutput("WS_Jul");
        f.application.platform()
            .rasters()
            .openFromFolder(f.folder.file("out"))
            ->save(std::array{
                RasterToSave{"WS_Jul", std::make_shared<MemoryRaster>(Grid(small, 2.0F)), "GRID"}});
    });
    EXPECT_THAT(f.application.messages(), Contains(StartsWith("Error in 'GridReadin': ")));
    EXPECT_TRUE(processState().runStatus);  // the run goes on
    EXPECT_THAT(lines.back(), StartsWith("Time for estimating referece ET: "));
}

TEST_F(RefEtRules, AHeatFluxThatFailsIsToldAndTheRunGoesOn) {
    runWith([&] { removeOutput("TM_Aug"); });
    EXPECT_THAT(f.application.messages(), Contains(StartsWith("Error in 'GetSoilHeatFlux': ")));
    EXPECT_TRUE(processState().runStatus);
    EXPECT_TRUE(f.hasOutput("RefET_Jul_2"));
}

// A map document that takes no layer.
class FullDocument : public test::FakeDocument {
  public:
    std::unique_ptr<IRasterLayer> createRasterLayer(const std::string& path) override {
        throw PlatformError("no room for " + path);
    }
};

class FullApplication : public test::TestApplication {
  public:
    using TestApplication::TestApplication;
    FullDocument& document() override { return document_; }

  private:
    FullDocument document_;
};

TEST_F(RefEtRules, AResultThatCannotBeShownStopsTheRun) {
    FullApplication application(f.world.platform, f.folder.file("settings"));
    EXPECT_FALSE(ReferenceEtRun(application, f.settings).run());
    EXPECT_FALSE(processState().runStatus);
    EXPECT_THAT(application.messages(),
                testing::ElementsAre(StartsWith("Errors in 'GridReadout':  no room for ")));
    EXPECT_FALSE(f.hasOutput("RefET_Jul_2"));
}

TEST_F(RefEtRules, AMissingNeighbourMakesNoHeatFluxAndIsToldOnce) {
    f.makeWeather(RunFixture::stations(),
                  [](const std::string& p, const Station& s, int m) -> FieldValue {
                      if (p == "TN_" && (m == 5 || m == 8)) return FieldValue();
                      return RunFixture::usualWeather(p, s, m);
                  });
    ASSERT_TRUE(f.run()) << f.allMessages();
    EXPECT_EQ(told("The soil heat flux"), 1);
    for (const FieldValue& flux : stored("GG")) ASSERT_EQ(std::get<double>(flux), 0);
}

TEST_F(RefEtRules, NothingIsSaidToBeDoneThatFailed) {
    f.settings.WeatherData = "";
    EXPECT_FALSE(f.run());
    EXPECT_FALSE(processState().runStatus);
    EXPECT_THAT(f.monitor.messages, Not(Contains("All parameter layers are ready now...")));
    f.monitor.messages.clear();
    f.settings.OutputWorkspace = f.folder.file("nowhere");
    EXPECT_FALSE(f.run());
    EXPECT_THAT(f.monitor.messages,
                Not(Contains("Access MDB has been created for operations ...")));
}

}  // namespace
}  // namespace velmora
