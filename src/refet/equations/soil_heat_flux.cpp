// SPDX-License-Identifier: MIT
#include "refet/equations/soil_heat_flux.h"

namespace velmora {

double soilHeatFlux(double before, double after, bool endOfYear) {
    return (endOfYear ? 0.70 : 0.35) / 18.0 * 2 * (after - before);
}

}  // namespace velmora
