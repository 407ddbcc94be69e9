// SPDX-License-Identifier: MIT
// The page that tells where our method departs from the papers, and the sample basin's figures on
// it.
#include "hosts/results/departures/departures_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "gis/memory_raster.h"
#include "gis/month_names.h"
#include "hosts/results/departures/effects.h"
#include "hosts/results/departures/sample_basin.h"
#include "tests/support/command_fixture.h"

namespace velmora {
namespace {

using test::Command;

TEST(Departures, TheDocumentIsWhatTheProgramMakes) {
    EXPECT_EQ(test::contentOf(VELMORA_TEST_DATA "/../../docs/departures.md"), departuresPage())
        << "velmora validate --departures > docs/departures.md makes it anew";
}

// Figures that were computed apart from this program.
TEST(Departures, MeetWhatIsKnownOfThem) {
    EXPECT_NEAR(sunShift(40)[9], 0.84, 0.01);
    EXPECT_NEAR(sunShift(50)[10], 1.34, 0.01);
    EXPECT_NEAR(latentHeat(35), 1.31, 0.005);
    const HeatFluxYear fallon = heatFluxYear(fallon2015());
    EXPECT_NEAR(fallon.percent[9], -3.7, 0.6);
    EXPECT_NEAR(fallon.percent[4], 1.7, 0.1);
    for (std::size_t month = 1; month < 11; ++month) {
        EXPECT_NEAR(fallon.ours[month] / fallon.papers[month], 5.0 / 9, 1e-12) << month;
    }
    EXPECT_LT(blaneyCriddleJanuary(40, 10).ours, 0);
    EXPECT_GT(blaneyCriddleJanuary(40, -20).ours, 0);
    EXPECT_EQ(blaneyCriddleJanuary(40, 40).ours, blaneyCriddleJanuary(40, 40).papers);
    EXPECT_LT(std::ranges::max(slopeNumerator(fallon2015())), 0.01);
    EXPECT_EQ(meansOverDays("Ref-ET, months: Fallon 2015").size(), 12U);
    EXPECT_EQ(meansOverDays("Ref-ET, months: Maricopa 2003, 2004 and 2020").size(), 36U);
}

TEST_F(Command, TheSampleBasinHasTheFiguresOfThePage) {
    ASSERT_EQ(run("--quiet demo basin --inputs-only").status, 0);
    const auto ran = run("--quiet --settings-folder basin/settings run refet --standard");
    ASSERT_EQ(ran.status, 0) << ran.output;
    const auto workspace =
        fixture.application.platform().rasters().openFromFolder(folder + "/basin/output");
    const auto valuesOf = [&](const std::string& name) {
        std::vector<float> values =
            wholeGrid(*workspace->openRasterDataset(name)->createDefaultRaster()).values;
        std::erase(values, kNoData);
        return values;
    };
    const auto meanOf = [](const std::vector<float>& values) {
        double sum = 0;
        for (const float value : values) sum += static_cast<double>(value);
        return sum / static_cast<double>(values.size());
    };
    for (int month = 1; month <= 12; ++month) {
        const SampleMonth& told = kSampleBasin.at(static_cast<std::size_t>(month - 1));
        const auto ours = valuesOf("RefET_" + GetMonthName(month) + "_2");
        const auto papers = valuesOf("RefETstd_" + GetMonthName(month) + "_2");
        const auto below = std::ranges::count_if(ours, [](float v) { return v < 0; });
        EXPECT_NEAR(told.percentBelowZero,
                    100 * static_cast<double>(below) / static_cast<double>(ours.size()), 0.001);
        EXPECT_NEAR(told.minimum, static_cast<double>(std::ranges::min(ours)), 1e-4);
        EXPECT_NEAR(told.mean, meanOf(ours), 1e-5);
        EXPECT_NEAR(told.meanOfPapers, meanOf(papers), 1e-5);
        EXPECT_GE(std::ranges::min(papers), 0);
    }
}

}  // namespace
}  // namespace velmora
