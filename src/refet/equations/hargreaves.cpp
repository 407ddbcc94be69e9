// SPDX-License-Identifier: MIT
#include "refet/equations/hargreaves.h"

#include <cmath>

#include "refet/equations/failure.h"

namespace velmora {

double hargreaves1985(double Tmax, double Tmin, double Ra) {
    if (Tmax < Tmin) return 0;
    const double T = (Tmax + Tmin) * 0.5;
    const double lambda = nonZero(2.501 - 0.002361 * T, "no latent heat at this temperature");
    return finite(0.0023 * std::sqrt(Tmax - Tmin) * (T + 17.8) * Ra / lambda,
                  "Hargreaves has no value");
}

}  // namespace velmora
