// SPDX-License-Identifier: MIT
// Whether a line over elevation is more than chance.
#pragma once

#include <optional>
#include <span>

#include "gis/linear_trend.h"

namespace velmora {

// A slope with a greater probability is not significant.
constexpr double kSignificance = 0.05;

// The probability, 0 to 1, that a slope at least as steep comes of values that elevation has no
// effect on: the two-sided t-test of the slope with n - 2 degrees of freedom. 1 for two pairs,
// through which a line always goes; nothing for values without variance.
std::optional<double> slopeProbability(std::span<const ElevationPair> pairs,
                                       const LinearTrend& trend);

// The probability that Student's t with that many degrees of freedom lies farther from 0.
double probabilityBeyond(double t, double degreesOfFreedom);

}  // namespace velmora
