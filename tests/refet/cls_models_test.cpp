// SPDX-License-Identifier: MIT
#include "refet/cls_models.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "refet/equations/failure.h"

namespace velmora {
namespace {

struct Models : testing::Test {
    std::vector<std::string> messages;
    clsModels models{[this](const std::string& text) { messages.push_back(text); }};
    double pm(bool useG, int crop, int month, int year, double G = 1) const {
        return models.AscePM(useG, crop, 30, 14, 8, 999, 999, 25, 2, G, 1500, 40, 15, month, year);
    }
};

TEST_F(Models, AlbedoStartsAt023) {
    EXPECT_EQ(models.albedo(), 0.23);
    const double before = pm(true, 1, 7, 2001);
    models.setAlbedo(0.3);
    EXPECT_LT(pm(true, 1, 7, 2001), before);
}

// Computed from the definitions by another program, in double precision: every constant counts.
TEST_F(Models, EveryConstantCounts) {
    constexpr double kRounding = 1e-12;
    EXPECT_NEAR(models.AscePM(true, 1, 30, 14, 8, 999, 999, 25, 2, 1, 1500, 40, 16, 7, 2001),
                7.130141316926581, kRounding);
    EXPECT_NEAR(models.AscePM(true, 0, 30, 14, 8, 999, 999, 25, 2, 1, 1500, 40, 16, 7, 2001),
                9.32392154749912, kRounding);
    EXPECT_NEAR(models.AscePM(true, 1, 9, -4, -6, 999, 999, 10, 3, -0.4, 2100, 43.5, 14, 2, 2004),
                2.0456130670378574, kRounding);
    EXPECT_NEAR(models.Taylor(true, 0, 30, 14, 8, 999, 999, 25, 2, 1, 1500, 40, 16, 7, 2001),
                6.076139772358038, kRounding);
    EXPECT_NEAR(models.Hargreaves1985(30, 14, 40, 16, 7, 2001), 7.437632775379624, kRounding);
}

// The same, for the one method that the figures above leave out.
TEST_F(Models, EveryConstantOfBlaneyCriddleCounts) {
    EXPECT_NEAR(models.SCS_Blaney_Criddle(30, 14, 40, 7, 2001), 6.819653479408902, 1e-12);
    EXPECT_NEAR(models.SCS_Blaney_Criddle(9, -4, 43.5, 4, 2004), 1.0481540405312553, 1e-12);
    EXPECT_NEAR(models.SCS_Blaney_Criddle(12, 999, 61.75, 10, 2001), 2.1996804450703262, 1e-12);
}

TEST_F(Models, HeatFluxCountsWhenItsFlagSaysSo) {
    EXPECT_LT(pm(true, 1, 7, 2001), pm(false, 1, 7, 2001));
    EXPECT_EQ(pm(false, 1, 7, 2001, 5), pm(false, 1, 7, 2001, 0));
    const auto pt = [&](bool useG, double G) {
        return models.Taylor(useG, 0, 30, 14, 8, 999, 999, 25, 2, G, 1500, 40, 15, 7, 2001);
    };
    EXPECT_LT(pt(true, 1), pt(false, 1));
    EXPECT_EQ(pt(false, 5), pt(false, 0));
}

TEST_F(Models, ResultsAreInchesOfTheMonth) {
    // February 2001 counts 29 days, 2000 counts 28: the same rate over different lengths. Day 46 of
    // a year of 366 and 365 days is nearly the same sun.
    const double common = models.Hargreaves1985(15, 3, 40, 15, 2, 2001) / 29;
    const double leap = models.Hargreaves1985(15, 3, 40, 15, 2, 2000) / 28;
    EXPECT_NEAR(common / leap, 1, 0.002);
    EXPECT_DOUBLE_EQ(inchesOfMonth(25.4, 31), 31);
}

TEST_F(Models, AMonthThatIsNoneHasNoDays) {
    EXPECT_EQ(pm(true, 1, 13, 2001), 0);
    EXPECT_EQ(models.Hargreaves1985(30, 14, 40, 15, 13, 2001), 0);
    EXPECT_EQ(models.Taylor(true, 0, 30, 14, 8, 999, 999, 25, 2, 0, 1500, 40, 15, 13, 2001), 0);
    EXPECT_EQ(models.SCS_Blaney_Criddle(30, 14, 40, 13, 2001), 0);
}

TEST_F(Models, HargreavesBelowTheMinimumComputesNothingElse) {
    EXPECT_EQ(models.Hargreaves1985(10, 12, 85, 15, 12, 2001), 0);  // polar night is not even met
    EXPECT_THROW(models.Hargreaves1985(12, 10, 85, 15, 12, 2001), EquationError);
}

TEST_F(Models, FailuresReachTheCaller) {
    EXPECT_THROW(models.AscePM(true, 1, 30, 14, 8, 999, 999, 25, 2, 0, 1500, 85, 15, 12, 2001),
                 EquationError);
    EXPECT_THROW(models.Taylor(true, 1, 30, 14, 999, -1, 999, 25, 2, 0, 1500, 40, 15, 7, 2001),
                 EquationError);
    EXPECT_TRUE(messages.empty());
}

TEST_F(Models, BlaneyCriddleTrapsItsOwn) {
    EXPECT_EQ(models.SCS_Blaney_Criddle(30, 14, 85, 12, 2001), 0);
    EXPECT_EQ(messages, std::vector<std::string>{"Error in SCS-BC"});
    EXPECT_GT(models.SCS_Blaney_Criddle(30, 14, 40, 7, 2001), 0);
    EXPECT_EQ(messages.size(), 1U);
}

TEST_F(Models, WindPlaysNoPartInPriestleyTaylor) {
    const auto pt = [&](double u2, int crop) {
        return models.Taylor(true, crop, 30, 14, 8, 999, 999, 25, u2, 1, 1500, 40, 15, 7, 2001);
    };
    EXPECT_EQ(pt(0, 0), pt(9, 1));
}

}  // namespace
}  // namespace velmora
