// SPDX-License-Identifier: MIT
#include "refet/cls_models.h"

#include "refet/equations/blaney_criddle.h"
#include "refet/equations/calendar.h"
#include "refet/equations/failure.h"
#include "refet/equations/hargreaves.h"
#include "refet/equations/penman_monteith.h"
#include "refet/equations/priestley_taylor.h"
#include "refet/equations/solar_radiation.h"

namespace velmora {

double clsModels::AscePM(bool useG, int cropType, double Tmax, double Tmin, double Tdew, double ea,
                         double RH, double Rs, double u2, double G, double z, double latitude,
                         int day, int month, int year) const {
    const double Ra = ExtraterrestrialRadiation(latitude, {day, month, year});
    const CellWeather weather{Tmax, Tmin, Tdew, ea, RH, Rs, u2, useG ? G : 0, z};
    return inchesOfMonth(
        penmanMonteith(weather, referenceCrop(cropType), Ra, psychrometricConstant(z), albedo_),
        DaysInMonth(month, year));
}

double clsModels::Taylor(bool useG, int, double Tmax, double Tmin, double Tdew, double ea,
                         double RH, double Rs, double u2, double G, double z, double latitude,
                         int day, int month, int year) const {
    const double Ra = ExtraterrestrialRadiation(latitude, {day, month, year});
    const CellWeather weather{Tmax, Tmin, Tdew, ea, RH, Rs, u2, useG ? G : 0, z};
    return inchesOfMonth(priestleyTaylor(weather, Ra, psychrometricConstant(z), albedo_),
                         DaysInMonth(month, year));
}

double clsModels::Hargreaves1985(double Tmax, double Tmin, double latitude, int day, int month,
                                 int year) const {
    if (Tmax < Tmin) return 0;
    const double Ra = ExtraterrestrialRadiation(latitude, {day, month, year});
    return inchesOfMonth(hargreaves1985(Tmax, Tmin, Ra), DaysInMonth(month, year));
}

double clsModels::SCS_Blaney_Criddle(double Tmax, double Tmin, double latitude, int month,
                                     int) const {
    try {
        return blaneyCriddle(Tmax, Tmin, MonthlyDaylightPercentage(latitude, month));
    } catch (const EquationError&) {
        if (report_) report_(kBlaneyCriddleError);
        return 0;
    }
}

}  // namespace velmora
