// SPDX-License-Identifier: MIT
// The calculator of reference evapotranspiration: one site, one day or month, plain numbers in and
// inches of the period out. Daily rates in mm are multiplied by the days of the month and divided
// by 25.4. Each call computes everything anew from the pieces in refet/equations; the run over a
// grid uses the same pieces, with those that depend on latitude and date alone taken once per
// latitude.
#pragma once

#include <functional>
#include <string>

#include "gis/units.h"

namespace velmora {

class clsModels {
  public:
    // `report` receives the message of Blaney-Criddle's own error trap.
    explicit clsModels(std::function<void(const std::string&)> report)
        : report_(std::move(report)) {}

    // Penman-Monteith. cropType 1: short reference crop, any other: tall. Temperatures deg C, ea
    // kPa, RH percent, Rs and G MJ m-2 d-1, u2 m s-1, z m, latitude decimal degrees. 999 marks a
    // missing Tdew, ea or Rs. Throws EquationError.
    double AscePM(bool useG, int cropType, double Tmax, double Tmin, double Tdew, double ea,
                  double RH, double Rs, double u2, double G, double z, double latitude, int day,
                  int month, int year) const;

    // The reflection coefficient of the reference surface; Penman-Monteith and Priestley-Taylor use
    // it.
    double albedo() const { return albedo_; }
    void setAlbedo(double albedo) { albedo_ = albedo; }

    // Priestley-Taylor, with the arguments of AscePM; the crop type and the wind play no part.
    double Taylor(bool useG, int cropType, double Tmax, double Tmin, double Tdew, double ea,
                  double RH, double Rs, double u2, double G, double z, double latitude, int day,
                  int month, int year) const;

    double Hargreaves1985(double Tmax, double Tmin, double latitude, int day, int month,
                          int year) const;

    // Traps its own failures: reports "Error in SCS-BC" and returns 0.
    double SCS_Blaney_Criddle(double Tmax, double Tmin, double latitude, int month, int year) const;

  private:
    double albedo_ = 0.23;
    std::function<void(const std::string&)> report_;
};

// A daily rate in mm as the depth of a month of so many days, inches.
inline double inchesOfMonth(double mmPerDay, int days) {
    return days * mmPerDay / kMillimetresPerInch;
}

constexpr const char* kBlaneyCriddleError = "Error in SCS-BC";

}  // namespace velmora
