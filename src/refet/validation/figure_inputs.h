// SPDX-License-Identifier: MIT
// The inputs of a published figure, in the units of the equations.
//
//   lat        decimal degrees                        z          m
//   J          day of a year that counts 365 days     date       day-month-year, as a run counts it
//   Tmax Tmin Tdew T   deg C                          F          deg F
//   ea         kPa                                    RH, RHmax and RHmin   percent
//   Rs Ra Rso G        MJ m-2 d-1                     u2, or u with its height `at`   m/s, m
//   crop       tall or short                          albedo     0.23 where none is given
//   choices    papers: by the papers' own conventions and not by ours
#pragma once

#include <map>
#include <string>

#include "refet/equations/calendar.h"
#include "refet/equations/energy_balance.h"

namespace velmora {

class FigureInputs {
  public:
    // Two lists of name=value, of which the second has precedence. Throws PlatformError.
    FigureInputs(const std::string& common, const std::string& own);

    bool has(const std::string& name) const { return values_.contains(name); }
    bool is(const std::string& name, const std::string& value) const;
    // Throws PlatformError when there is none, or when it is no number.
    double number(const std::string& name) const;
    double number(const std::string& name, double otherwise) const;
    std::string text(const std::string& name) const;

    Date date() const;
    const Conventions& conventions() const;
    // Wind at 2 m: reduced from the height of the instrument (FAO-56 equation 47) where that is
    // what the source gives.
    double wind() const;
    // kPa: from dew point, from maximum and minimum humidity (FAO-56 equation 17), or as it is
    // given; kMissing where the humidity is missing or the equations take it themselves.
    double vapourPressure() const;
    CellWeather weather() const;

  private:
    std::map<std::string, std::string> values_;
};

// Wind speed at 2 m over grass from that at `height` m, FAO-56 equation 47 (ASCE-EWRI 2005, 33).
double windSpeedAt2m(double speed, double height);

}  // namespace velmora
