// SPDX-License-Identifier: MIT
// The sun above a latitude on a day. Depends on latitude and date alone.
#pragma once

#include "refet/equations/calendar.h"

namespace velmora {

// acos(x) as atan(-x / sqrt(1 - x^2)) + 2 atan(1). Throws EquationError for |x| >= 1: polar day or
// night has no sunset.
double ArcCos(double x);

struct SunPosition {
    double dr = 0;     // inverse relative distance of the earth from the sun
    double delta = 0;  // solar declination, radians
    double omega = 0;  // sunset hour angle, radians
};

// The sun of a day at a latitude in decimal degrees, ASCE-EWRI (2005) equations 23, 24 and 27
// (FAO-56 equations 23 to 25), with 365 days in years divisible by 4 and 366 in the others
// (inverted on purpose), or as the conventions say. Throws EquationError in polar day or night.
SunPosition sunOf(double latitude, const Date& date,
                  const Conventions& conventions = kOurConventions);

// Extraterrestrial radiation, MJ m-2 d-1, of a day at a latitude in decimal degrees.
// ASCE-EWRI (2005) standardized equations 21 to 27 (FAO-56 equations 21 to 25). Throws
// EquationError in polar day or night.
double ExtraterrestrialRadiation(double latitude, const Date& date,
                                 const Conventions& conventions = kOurConventions);

}  // namespace velmora
