// SPDX-License-Identifier: MIT
// What each choice in which our method leaves the papers is worth, from the equations themselves
// and, where weather counts, from the monthly means of two stations that the published figures
// have (refet/validation).
#pragma once

#include <array>
#include <string>
#include <vector>

#include "refet/validation/figure_inputs.h"

namespace velmora {

using Year = std::array<double, 12>;  // a value a month

constexpr int kCommonYear = 2015;

// The twelve months of a station and year, in order.
using StationYear = std::vector<FigureInputs>;
StationYear fallon2015();    // Nevada, 39.5 N, 1208 m
StationYear maricopa2003();  // Arizona, 33.1 N, 361 m

// Percent of the papers' extraterrestrial radiation, on the days that stand for the months of a
// common year.
Year sunShift(double latitude);

// Percent by which radiation changes where the latitude is a tenth of a degree higher.
Year tenthOfADegree(double latitude);

// Soil heat flux of a year at a station, MJ m-2 d-1, and what ours does to short reference ET,
// percent. The year's January follows its December.
struct HeatFluxYear {
    Year ours;
    Year papers;
    Year percent;
    double percentOfYear = 0;
};
HeatFluxYear heatFluxYear(const StationYear& station);

// On a day with a quarter of the clear-sky radiation, 8 deg C at most and 2 at least, the air
// saturated at 2, wind 2 m/s, 500 m high: percent by which short reference ET is higher with the
// clear-sky ratio at 0.25 than at 0.3.
Year overcast(double latitude);
// The least Rs / Rso of the station's months.
double leastClearness(const StationYear& station);
// Of such a day at a mean temperature in saturated air: the long-wave radiation that it loses less,
// MJ m-2 d-1.
double overcastLongwave(double T);

// Inches of January by Blaney-Criddle at a mean temperature, deg F.
struct BlaneyCriddleJanuary {
    double ours = 0;
    double papers = 0;
};
BlaneyCriddleJanuary blaneyCriddleJanuary(double latitude, double fahrenheit);

// Percent of the published daylight of the month, at a latitude of its table.
Year daylightError(double latitude);

// Percent by which Hargreaves is higher with the latent heat of the mean temperature than with
// 2.45.
double latentHeat(double T);

// Short reference ET by the station's months, percent: with the slope's numerator 2504 against
// 2503, and with 4.901e-9 for the Stefan-Boltzmann constant against FAO-56's 4.903e-9.
Year slopeNumerator(const StationYear& station);
Year stefanBoltzmann(const StationYear& station);

// Tall over short reference ET, and Priestley-Taylor over short reference ET.
Year tallOverShort(const StationYear& station);
Year priestleyTaylorOverShort(const StationYear& station);

// Short reference ET of the month's mean weather over the published sum of days, percent; the
// figures with `crop=short` of a group of published months, in order.
std::vector<double> meansOverDays(const std::string& group);

}  // namespace velmora
