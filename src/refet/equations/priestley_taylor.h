// SPDX-License-Identifier: MIT
#pragma once

#include "refet/equations/energy_balance.h"

namespace velmora {

// Priestley and Taylor (1972) with the coefficient 1.26 and a latent heat of 2.45 MJ kg-1: mm of a
// day. Wind plays no part. Throws EquationError.
double priestleyTaylor(const CellWeather& weather, double Ra, double gamma, double albedo,
                       const Conventions& conventions = kOurConventions);

}  // namespace velmora
