// SPDX-License-Identifier: MIT
#include "platform/analysis/semivariogram.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace velmora::platform {
namespace {

TEST(Semivariogram, LagsByHand) {
    // A box of 30 x 40 metres: diagonal 50, cutoff 50 / 3, lags 10 / 9 m wide.
    const std::vector<Sample> samples = {
        {{0, 0}, 1}, {{10, 0}, 4}, {{0, 10}, 3}, {{30, 40}, 7}, {{30, 30}, 9}};
    EXPECT_DOUBLE_EQ(semivariogramCutoff(samples), 50.0 / 3);
    const auto lags = empiricalSemivariogram(samples, semivariogramCutoff(samples));
    // Distances 10 (pairs 0-1, 0-2, 3-4: squares 9, 4, 4) and 14.14 (1-2: 1).
    ASSERT_EQ(lags.size(), 2U);
    EXPECT_EQ(lags[0].pairs, 3U);
    EXPECT_DOUBLE_EQ(lags[0].distance, 10);
    EXPECT_DOUBLE_EQ(lags[0].semivariance, 17.0 / 6);
    EXPECT_EQ(lags[1].pairs, 1U);
    EXPECT_DOUBLE_EQ(lags[1].distance, std::sqrt(200.0));
    EXPECT_DOUBLE_EQ(lags[1].semivariance, 0.5);
}

TEST(Semivariogram, ALagIsClosedAbove) {
    // Cutoff 15: lags of 1. A pair 1 apart is in the first lag, one 15 apart in the last, one 15.5
    // apart in none.
    const std::vector<Sample> samples = {{{0, 0}, 0}, {{1, 0}, 1}, {{16, 0}, 3}, {{31.5, 0}, 9}};
    const auto lags = empiricalSemivariogram(samples, 15);
    ASSERT_EQ(lags.size(), 2U);
    EXPECT_DOUBLE_EQ(lags[0].distance, 1);
    EXPECT_DOUBLE_EQ(lags[1].distance, 15);
    EXPECT_EQ(lags[1].pairs, 1U);
    const std::vector<Sample> beside = {{{0, 0}, 0}, {{0.9, 0}, 1}, {{1.9, 0}, 3}};
    const auto shared = empiricalSemivariogram(beside, 15);  // 0.9 and 1 share the first
    ASSERT_EQ(shared.size(), 2U);
    EXPECT_EQ(shared[0].pairs, 2U);
}

TEST(Semivariogram, RoundingPutsNoPairIntoAnotherLag) {
    // As 0.9 and 1, and as 15, but for the last digits.
    const std::vector<Sample> beside = {{{0, 0}, 0}, {{0.9, 0}, 1}, {{1.9 + 1e-12, 0}, 3}};
    EXPECT_EQ(empiricalSemivariogram(beside, 15)[0].pairs, 2U);
    const std::vector<Sample> far = {{{0, 0}, 0}, {{15 + 1e-12, 0}, 1}};
    EXPECT_EQ(empiricalSemivariogram(far, 15).size(), 1U);
}

TEST(Semivariogram, FifteenLags) {
    // 14 and 14.01 lie on the two sides of the last border.
    const std::vector<Sample> samples = {{{0, 0}, 0}, {{14, 0}, 1}, {{0, 14.01}, 3}};
    EXPECT_EQ(empiricalSemivariogram(samples, 15).size(), 2U);
}

TEST(Semivariogram, TheSphericalShape) {
    const SphericalModel model{0.5, 2, 100};
    EXPECT_EQ(model.semivariance(0), 0);
    EXPECT_DOUBLE_EQ(model.semivariance(50), 0.5 + 2 * (0.75 - 0.0625));
    EXPECT_DOUBLE_EQ(model.semivariance(100), 2.5);
    EXPECT_DOUBLE_EQ(model.semivariance(1e6), 2.5);
}

std::vector<SemivariogramLag> lagsOf(const SphericalModel& model) {
    std::vector<SemivariogramLag> lags;
    for (std::size_t i = 1; i <= 15; ++i) {
        const double h = 1000.0 * static_cast<double>(i) - 300;
        lags.push_back({h, model.semivariance(h), 10 + i});
    }
    return lags;
}

TEST(SphericalFit, FindsTheModelThatMadeTheLags) {
    for (const SphericalModel& model :
         {SphericalModel{0.1, 2, 8000}, SphericalModel{0, 1e-9, 3000},
          SphericalModel{3e6, 1e6, 60000}, SphericalModel{1, 0.3, 1900}}) {
        const Semivariogram fitted = fitSpherical(lagsOf(model), 150000);
        // Beyond the lags the error is flat: ranges of 0.4 % less fit 60 km as well.
        const double flat = model.range > 15000 ? 40 : 1;
        EXPECT_NEAR(fitted.model.range, model.range, flat * 1e-4 * model.range);
        EXPECT_LE(fitted.model.range, model.range * (1 + 1e-7));
        EXPECT_NEAR(fitted.model.nugget, model.nugget, flat * 2e-5 * model.sill());
        EXPECT_NEAR(fitted.model.partialSill, model.partialSill, flat * 1e-4 * model.sill());
        for (std::size_t i = 0; i < 15; ++i) {
            const double h = fitted.lags[i].distance;
            EXPECT_NEAR(fitted.model.semivariance(h), model.semivariance(h), 1e-5 * model.sill());
        }
        EXPECT_LT(fitted.weightedError, 1e-12 * model.sill() * model.sill());
        EXPECT_EQ(fitted.lags.size(), 15U);
    }
}

// A plain search: a fine scan over ranges, and for each over the split of nugget and sill by the
// two normal equations or an edge.
double smallestError(const std::vector<SemivariogramLag>& lags, double first, double last) {
    double best = HUGE_VAL;
    const auto error = [&](double n, double s, double a) {
        double sum = 0;
        for (const SemivariogramLag& lag : lags) {
            const double u = std::min(1.0, lag.distance / a);
            const double off = lag.semivariance - n - s * (1.5 * u - 0.5 * u * u * u);
            sum += static_cast<double>(lag.pairs) / lag.distance / lag.distance * off * off;
        }
        return sum;
    };
    for (int i = 0; i <= 4000; ++i) {
        const double a = first * std::pow(last / first, i / 4000.0);
        // The error is a parabola in n for a given s and the other way round: alternate.
        double n = 0;
        double s = 0;
        double w = 0;
        for (const SemivariogramLag& lag : lags) {
            w += static_cast<double>(lag.pairs) / lag.distance / lag.distance;
        }
        for (int round = 0; round < 400; ++round) {
            double g = 0;
            for (const SemivariogramLag& lag : lags) {
                const double u = std::min(1.0, lag.distance / a);
                g += static_cast<double>(lag.pairs) / lag.distance / lag.distance *
                     (lag.semivariance - s * (1.5 * u - 0.5 * u * u * u));
            }
            n = std::max(0.0, g / w);
            double top = 0;
            double bottom = 0;
            for (const SemivariogramLag& lag : lags) {
                const double u = std::min(1.0, lag.distance / a);
                const double f = 1.5 * u - 0.5 * u * u * u;
                const double wi = static_cast<double>(lag.pairs) / lag.distance / lag.distance;
                top += wi * f * (lag.semivariance - n);
                bottom += wi * f * f;
            }
            s = std::max(0.0, top / bottom);
        }
        best = std::min(best, error(n, s, a));
    }
    return best;
}

TEST(SphericalFit, NoModelIsBetter) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> share(0, 1);
    for (int round = 0; round < 6; ++round) {
        std::vector<SemivariogramLag> lags;
        for (std::size_t i = 1; i <= 15; ++i) {
            lags.push_back({900.0 * static_cast<double>(i) + 500 * share(random),
                            0.2 * static_cast<double>(i % 4) + 3 * share(random) * share(random),
                            1 + static_cast<std::size_t>(12 * share(random))});
        }
        const Semivariogram fitted = fitSpherical(lags, 140000);
        EXPECT_LE(fitted.weightedError,
                  smallestError(lags, lags.front().distance, 140000) * (1 + 1e-9));
        EXPECT_GE(fitted.model.nugget, 0);
        EXPECT_GE(fitted.model.partialSill, 0);
        EXPECT_GE(fitted.model.range, lags.front().distance);
        EXPECT_LE(fitted.model.range, 140000);
    }
}

TEST(SphericalFit, TheSmallestOfTwoValleysWins) {
    // A steep rise at the first lags makes a valley at short ranges, the long rise behind it one at
    // the far end, which is deeper.
    std::vector<SemivariogramLag> lags = lagsOf({0, 1, 2500});
    for (std::size_t i = 3; i < lags.size(); ++i)
        lags[i].semivariance += 0.04 * lags[i].distance / 1000;
    for (std::size_t i = 9; i < lags.size(); ++i) lags[i].pairs *= 40;
    const Semivariogram fitted = fitSpherical(lags, 150000);
    EXPECT_LE(fitted.weightedError,
              smallestError(lags, lags.front().distance, 150000) * (1 + 1e-9));
}

TEST(SphericalFit, LagsWithoutStructureAreAllNugget) {
    std::vector<SemivariogramLag> lags = lagsOf({2, 0, 1000});
    const Semivariogram level = fitSpherical(lags, 150000);
    EXPECT_NEAR(level.model.nugget, 2, 1e-9);
    EXPECT_NEAR(level.model.partialSill, 0, 1e-9);
    for (std::size_t i = 0; i < lags.size(); ++i)
        lags[i].semivariance -= 0.05 * static_cast<double>(i);
    EXPECT_EQ(fitSpherical(lags, 150000).model.partialSill, 0);
}

// The share of a range at which the model has the given share of its sill.
double shareOf(double semivariance) {
    double low = 0;
    double high = 1;
    for (int i = 0; i < 100; ++i) {
        const double u = (low + high) / 2;
        (u * (1.5 - 0.5 * u * u) < semivariance ? low : high) = u;
    }
    return low;
}

TEST(SphericalFit, OfEqualModelsTheShortestRangeHolds) {
    // One class at half of the others' semivariance: every range up to the second class fits all
    // of them, from that on whose nugget is 0.
    for (const double scale : {1.0, 0.37, 1.09, 1234.5}) {
        std::vector<SemivariogramLag> lags = {
            {1000, 0.5, 3}, {3000, 1, 4}, {4000, 1, 5}, {5000, 1, 7}};
        for (SemivariogramLag& lag : lags) lag.distance *= scale;
        const Semivariogram fitted = fitSpherical(lags, 60000 * scale);
        const double shortest = 1000 / shareOf(0.5) * scale;
        EXPECT_NEAR(fitted.model.range, shortest, 5e-6 * shortest) << scale;
        EXPECT_NEAR(fitted.model.nugget, 0, 1e-5);
        EXPECT_NEAR(fitted.model.sill(), 1, 1e-5);
        ASSERT_TRUE(fitted.longestEqualRange);
        EXPECT_NEAR(*fitted.longestEqualRange, 3000 * scale, 6 * scale);
    }
}

TEST(SphericalFit, TwoClassesLeaveTheRangeOpen) {
    // Two numbers fit two classes whatever the range.
    const std::vector<SemivariogramLag> lags = {{1000, 0.9, 3}, {2000, 1, 4}};
    const Semivariogram fitted = fitSpherical(lags, 50000);
    const double shortest = 1000 / shareOf(0.9);
    EXPECT_NEAR(fitted.model.range, shortest, 2e-5 * shortest);
    EXPECT_EQ(fitted.longestEqualRange, 50000);
    // One class: all is nugget.
    const Semivariogram one = fitSpherical({{1000, 0.9, 3}}, 50000);
    EXPECT_EQ(one.model, (SphericalModel{0.9, 0, 1000}));
    EXPECT_FALSE(one.longestEqualRange);
}

TEST(SphericalFit, ARangeThatTheClassesTellHasNoEqual) {
    for (const SphericalModel& model :
         {SphericalModel{0.1, 2, 8000}, SphericalModel{1, 0.3, 1900}}) {
        EXPECT_FALSE(fitSpherical(lagsOf(model), 150000).longestEqualRange);
    }
}

TEST(SphericalFit, ErrorsThatDifferByMoreThanRoundingAreNotEqual) {
    // The third class is off by 3e-6 of its semivariance, an error of some 1e-11 of the weighted
    // squares for ranges between the first two classes: a longer range that meets it better wins.
    std::vector<SemivariogramLag> lags = {
        {1000, 0.5, 3}, {3000, 0.9999, 40}, {4000, 1, 50}, {5000, 1, 70}};
    EXPECT_GT(fitSpherical(lags, 60000).model.range, 3000);
}

TEST(Semivariogram, WhenThereIsNone) {
    const std::vector<Sample> three = {{{0, 0}, 1}, {{1, 0}, 4}, {{30, 30}, 3}};
    EXPECT_FALSE(semivariogramOf(three));
    std::vector<Sample> alike;
    for (int i = 0; i < 9; ++i) alike.push_back({{i * 10.0, i * i * 1.0}, 0.1 + 1e-17 * i});
    EXPECT_FALSE(semivariogramOf(alike));
    alike[4].value = 0.2;
    EXPECT_TRUE(semivariogramOf(alike));
    // Four corners: every pair is farther apart than a third of the diagonal.
    const std::vector<Sample> corners = {{{0, 0}, 1}, {{10, 0}, 4}, {{0, 10}, 3}, {{10, 10}, 8}};
    EXPECT_FALSE(semivariogramOf(corners));
    // The only near pair has one value.
    std::vector<Sample> twins = corners;
    twins.push_back({{0.5, 0}, 1});
    EXPECT_FALSE(semivariogramOf(twins));
}

TEST(Semivariogram, TheLongestRangeIsTenCutoffs) {
    // Values that rise along a line differ the more the farther apart: no range is long enough.
    std::vector<Sample> samples;
    for (int i = 0; i < 40; ++i) samples.push_back({{i * 100.0, 3.0 * (i % 2)}, i * 0.5});
    EXPECT_NEAR(semivariogramOf(samples)->model.range, 10 * semivariogramCutoff(samples), 1e-6);
}

TEST(Semivariogram, DoesNotDependOnUnits) {
    std::vector<Sample> metres;
    std::mt19937 random(9);
    std::uniform_real_distribution<double> share(0, 1);
    for (int i = 0; i < 25; ++i)
        metres.push_back({{1e5 * share(random), 1e5 * share(random)}, share(random)});
    std::vector<Sample> other = metres;
    for (Sample& s : other) {
        s.at = {s.at.x * 1024, s.at.y * 1024};
        s.value *= 1.0 / 65536;
    }
    const auto a = semivariogramOf(metres);
    const auto b = semivariogramOf(other);
    EXPECT_NEAR(b->model.range, a->model.range * 1024, 1e-3 * b->model.range);
    EXPECT_NEAR(b->model.sill(), a->model.sill() / 65536 / 65536, 1e-4 * b->model.sill());
}

}  // namespace
}  // namespace velmora::platform
