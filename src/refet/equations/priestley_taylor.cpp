// SPDX-License-Identifier: MIT
#include "refet/equations/priestley_taylor.h"

#include "refet/equations/failure.h"

namespace velmora {

double priestleyTaylor(const CellWeather& w, double Ra, double gamma, double albedo,
                       const Conventions& conventions) {
    const EnergyBalance b = energyBalance(w, Ra, gamma, albedo, conventions);
    return finite(1.26 * b.Delta / (b.Delta + b.gamma) * (b.Rn - w.G) / 2.45,
                  "Priestley-Taylor has no value");
}

}  // namespace velmora
