// SPDX-License-Identifier: MIT
#include "gis/trend_test.h"

#include <cmath>

namespace velmora {

namespace {

constexpr double kRounding = 1e-12;
constexpr int kMostTerms = 500;

// The continued fraction of the incomplete beta function I_x(a, b), which converges quickly for
// x < (a + 1) / (a + b + 2); by Lentz's method.
double betaFraction(double x, double a, double b) {
    constexpr double kTiny = 1e-300;
    const auto notZero = [](double value) { return std::fabs(value) < kTiny ? kTiny : value; };
    double c = 1;
    double d = 1 / notZero(1 - (a + b) * x / (a + 1));
    double fraction = d;
    for (int m = 1; m < kMostTerms; ++m) {
        const double even = m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m));
        d = 1 / notZero(1 + even * d);
        c = notZero(1 + even / c);
        fraction *= c * d;
        const double odd = -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1));
        d = 1 / notZero(1 + odd * d);
        c = notZero(1 + odd / c);
        fraction *= c * d;
        if (std::fabs(c * d - 1) < kRounding) break;
    }
    return fraction;
}

double incompleteBeta(double x, double a, double b) {
    if (x <= 0) return 0;
    if (x >= 1) return 1;
    const double front = std::exp(std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) +
                                  a * std::log(x) + b * std::log1p(-x));
    if (x < (a + 1) / (a + b + 2)) return front * betaFraction(x, a, b) / a;
    return 1 - front * betaFraction(1 - x, b, a) / b;
}

}  // namespace

double probabilityBeyond(double t, double degreesOfFreedom) {
    return incompleteBeta(degreesOfFreedom / (degreesOfFreedom + t * t), degreesOfFreedom / 2, 0.5);
}

std::optional<double> slopeProbability(std::span<const ElevationPair> pairs,
                                       const LinearTrend& trend) {
    const auto explained = rSquared(pairs, trend);
    if (!explained) return std::nullopt;
    if (pairs.size() < 3) return 1;
    const auto degrees = static_cast<double>(pairs.size() - 2);
    const double left = 1 - *explained;
    if (left <= kRounding) return 0;
    // t^2 = r^2 (n - 2) / (1 - r^2)
    return probabilityBeyond(std::sqrt(*explained * degrees / left), degrees);
}

}  // namespace velmora
