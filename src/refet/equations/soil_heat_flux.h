// SPDX-License-Identifier: MIT
// The soil heat flux of a month from mean air temperatures of months (deg C), MJ m-2 d-1.
#pragma once

namespace velmora {

// What the run's map algebra makes of the month before and the month after: 0.35 / 18 per degree of
// the sum of maximum and minimum. In January and December 0.70 / 18, with the month itself for the
// neighbour that is missing.
double soilHeatFlux(double before, double after, bool endOfYear);

// MJ m-2 d-1 per deg C of mean temperature: from the month before to the month after (FAO-56
// equation 43, ASCE-EWRI 2005 equation 31), and from the month before to the month itself
// (equations 44 and 32).
constexpr double kHeatFluxOverTwoMonths = 0.07;
constexpr double kHeatFluxOverOneMonth = 0.14;

}  // namespace velmora
