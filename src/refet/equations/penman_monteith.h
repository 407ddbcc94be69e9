// SPDX-License-Identifier: MIT
// ASCE standardized Penman-Monteith (ASCE-EWRI 2005, equation 1), which for the short crop is also
// FAO-56 Penman-Monteith (Allen et al. 1998, equation 6).
#pragma once

#include "refet/equations/energy_balance.h"

namespace velmora {

// The numerator and denominator constants of a reference crop, daily time step.
struct ReferenceCrop {
    double Cn = 0;
    double Cd = 0;
};

// Crop type 1 is the short crop (grass); any other value is the tall one (alfalfa).
ReferenceCrop referenceCrop(int cropType);

// Reference ET of a day, mm. Throws EquationError.
double penmanMonteith(const CellWeather& weather, const ReferenceCrop& crop, double Ra,
                      double gamma, double albedo,
                      const Conventions& conventions = kOurConventions);

}  // namespace velmora
