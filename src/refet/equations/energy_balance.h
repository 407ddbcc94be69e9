// SPDX-License-Identifier: MIT
// Vapour pressure, net radiation and the psychrometric terms that Penman-Monteith and
// Priestley-Taylor share. FAO-56 (Allen et al. 1998) and ASCE-EWRI (2005).
#pragma once

#include "refet/equations/conventions.h"

namespace velmora {

// Stands for a missing input (dew point, vapour pressure, solar radiation).
constexpr double kMissing = 999;

// Saturation vapour pressure at T deg C, kPa (FAO-56 equation 11).
double SaturationVapourPressure(double T);

// Actual vapour pressure from mean relative humidity in percent, kPa (FAO-56 equation 19).
double VapourPressureFromHumidity(double Tmax, double Tmin, double RH);

// The weather of a cell or site on a day.
struct CellWeather {
    double Tmax = 0;         // deg C
    double Tmin = 0;         // deg C
    double Tdew = kMissing;  // deg C
    double ea = kMissing;    // actual vapour pressure, kPa
    double RH = kMissing;    // mean relative humidity, percent; used when Tdew and ea are missing
    double Rs = kMissing;    // incoming solar radiation, MJ m-2 d-1; taken as 0 when missing
    double u2 = 0;           // wind speed at 2 m, m s-1
    double G = 0;            // soil heat flux, MJ m-2 d-1
    double z = 0;            // elevation, m
};

struct EnergyBalance {
    double T = 0;      // mean temperature, deg C
    double ea = 0;     // actual vapour pressure, kPa
    double Rso = 0;    // clear-sky radiation, MJ m-2 d-1
    double Rns = 0;    // net solar radiation
    double Rnl = 0;    // net outgoing long-wave radiation
    double Rn = 0;     // net radiation
    double Delta = 0;  // slope of the saturation vapour pressure curve, kPa / deg C
    double gamma = 0;  // psychrometric constant, kPa / deg C
};

// The psychrometric constant at z m, kPa / deg C, from the air pressure (FAO-56 equations 7 and 8).
// Depends on elevation alone. Throws EquationError where there is no air.
double psychrometricConstant(double z);

// The balance of a cell. `Ra` is the day's extraterrestrial radiation, `gamma` the psychrometric
// constant at the cell's elevation, `albedo` the share of solar radiation that the surface
// reflects. Throws EquationError when there is no clear-sky radiation, or for a negative vapour
// pressure.
EnergyBalance energyBalance(const CellWeather& weather, double Ra, double gamma, double albedo,
                            const Conventions& conventions = kOurConventions);

}  // namespace velmora
