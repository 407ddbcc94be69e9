// SPDX-License-Identifier: MIT
#include "refet/equations/penman_monteith.h"

#include "refet/equations/failure.h"

namespace velmora {

ReferenceCrop referenceCrop(int cropType) {
    return cropType == 1 ? ReferenceCrop{900, 0.34} : ReferenceCrop{1600, 0.38};
}

double penmanMonteith(const CellWeather& w, const ReferenceCrop& crop, double Ra, double gamma,
                      double albedo, const Conventions& conventions) {
    const EnergyBalance b = energyBalance(w, Ra, gamma, albedo, conventions);
    const double es = (SaturationVapourPressure(w.Tmax) + SaturationVapourPressure(w.Tmin)) / 2;
    const double radiationTerm = 0.408 * b.Delta * (b.Rn - w.G);
    const double windTerm = b.gamma * (crop.Cn / (b.T + 273)) * w.u2 * (es - b.ea);
    return finite((radiationTerm + windTerm) / (b.Delta + b.gamma * (1 + crop.Cd * w.u2)),
                  "Penman-Monteith has no value");
}

}  // namespace velmora
