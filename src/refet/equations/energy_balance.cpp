// SPDX-License-Identifier: MIT
#include "refet/equations/energy_balance.h"

#include <cmath>

#include "refet/equations/failure.h"

namespace velmora {

namespace {

double fourthPower(double x) {
    const double square = x * x;
    return square * square;
}

double actualVapourPressure(const CellWeather& w) {
    if (w.Tdew != kMissing) return SaturationVapourPressure(w.Tdew);
    if (w.ea != kMissing) return w.ea;
    return VapourPressureFromHumidity(w.Tmax, w.Tmin, w.RH);
}

double clearnessRatio(double Rs, double Rso, double lowest) {
    const double ratio = Rs / nonZero(Rso, "no clear-sky radiation");
    if (ratio >= 1) return 1.0;
    return ratio < lowest ? lowest : ratio;
}

}  // namespace

double SaturationVapourPressure(double T) {
    return 0.6108 * std::exp(17.27 * T / nonZero(T + 237.3, "vapour pressure at -237.3 deg C"));
}

double psychrometricConstant(double z) {
    const double base = (293 - 0.0065 * z) / 293;
    if (!(base > 0)) throw EquationError("no air pressure at this elevation");
    const double P = 101.3 * std::pow(base, 5.26);
    return 0.000665 * P;
}

double VapourPressureFromHumidity(double Tmax, double Tmin, double RH) {
    return (SaturationVapourPressure(Tmax) + SaturationVapourPressure(Tmin)) / 2 * RH / 100;
}

EnergyBalance energyBalance(const CellWeather& w, double Ra, double gamma, double albedo,
                            const Conventions& conventions) {
    EnergyBalance balance;
    balance.Rso = (0.75 + 2e-5 * w.z) * Ra;
    const double Rs = w.Rs == kMissing ? 0 : w.Rs;
    balance.Rns = (1 - albedo) * Rs;
    const double TmaxK = w.Tmax + 273.16;
    const double TminK = w.Tmin + 273.16;
    const double ratio = clearnessRatio(Rs, balance.Rso, conventions.lowestClearness);
    balance.ea = actualVapourPressure(w);
    if (balance.ea < 0) throw EquationError("a negative vapour pressure");
    const double fcd = 1.35 * ratio - 0.35;
    balance.Rnl = fcd * (0.34 - 0.14 * std::sqrt(balance.ea)) * 4.901e-9 *
                  (fourthPower(TmaxK) + fourthPower(TminK)) / 2;
    balance.Rn = balance.Rns - balance.Rnl;
    balance.T = (w.Tmax + w.Tmin) / 2;
    const double base = nonZero(balance.T + 237.3, "a mean temperature of -237.3 deg C");
    balance.Delta = 2504 * std::exp(17.27 * balance.T / base) / (base * base);
    balance.gamma = gamma;
    return balance;
}

}  // namespace velmora
