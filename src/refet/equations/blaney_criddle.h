// SPDX-License-Identifier: MIT
// SCS modified Blaney-Criddle (USDA-SCS Technical Release 21, 1970) without a crop growth
// coefficient: u = kt t p / 100 with kt = 0.0173 t - 0.314, inches per month.
#pragma once

#include "refet/equations/conventions.h"

namespace velmora {

// Percent of the year's daylight hours that fall in the month, at a latitude in decimal degrees; 0
// for a month outside 1 to 12. Day lengths and their sum are carried in single precision. The
// argument is left in radians, as the callers of this table have always found it. Throws
// EquationError in polar day or night.
double MonthlyDaylightPercentage(double& latitude, int month);

// The climatic coefficient kt at a mean temperature in deg F; the conventions may hold it at 0.30
// below 36 deg F.
double climaticCoefficient(double fahrenheit, const Conventions& conventions = kOurConventions);

// Inches of the month from its daylight percentage p; Tmin may be missing (999).
double blaneyCriddle(double Tmax, double Tmin, double p,
                     const Conventions& conventions = kOurConventions);

}  // namespace velmora
