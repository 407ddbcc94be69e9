// SPDX-License-Identifier: MIT
#include "refet/validation/quantities.h"

#include <algorithm>
#include <numbers>

#include "gis/errors.h"
#include "gis/units.h"
#include "refet/cls_models.h"
#include "refet/equations/blaney_criddle.h"
#include "refet/equations/hargreaves.h"
#include "refet/equations/penman_monteith.h"
#include "refet/equations/priestley_taylor.h"
#include "refet/equations/soil_heat_flux.h"
#include "refet/equations/solar_estimate.h"
#include "refet/equations/solar_radiation.h"

namespace velmora {

namespace {

double celsius(double fahrenheit) { return (fahrenheit - 32) * 5 / 9; }

double radiation(const FigureInputs& in) {
    return in.has("Ra") ? in.number("Ra")
                        : ExtraterrestrialRadiation(in.number("lat"), in.date(), in.conventions());
}

SunPosition sun(const FigureInputs& in) {
    return sunOf(in.number("lat"), in.date(), in.conventions());
}

double gammaOf(const FigureInputs& in) { return psychrometricConstant(in.number("z", 0)); }

// A given clear-sky radiation stands for the one that follows from Ra; at sea level it is three
// quarters of Ra.
EnergyBalance balance(const FigureInputs& in) {
    CellWeather weather = in.weather();
    if (in.has("Rso")) weather.z = 0;
    const double Ra = in.has("Rso") ? in.number("Rso") / 0.75 : radiation(in);
    return energyBalance(weather, Ra, gammaOf(in), in.number("albedo", 0.23), in.conventions());
}

double vapourPressure(const FigureInputs& in) {
    if (in.has("Tdew")) return SaturationVapourPressure(in.number("Tdew"));
    if (in.vapourPressure() != kMissing) return in.vapourPressure();
    return VapourPressureFromHumidity(in.number("Tmax"), in.number("Tmin"), in.number("RH"));
}

double meanSaturation(const FigureInputs& in) {
    return (SaturationVapourPressure(in.number("Tmax")) +
            SaturationVapourPressure(in.number("Tmin"))) /
           2;
}

double saturationDeficit(const FigureInputs& in) { return meanSaturation(in) - vapourPressure(in); }

double slope(const FigureInputs& in) {
    const double T = in.number("T", 0);
    const CellWeather weather{in.number("Tmax", T), in.number("Tmin", T), 0};
    return energyBalance(weather, 1, 0.066, 0.23).Delta;
}

double heatFlux(const FigureInputs& in) {
    if (!in.is("choices", "papers")) {
        return soilHeatFlux(in.number("before"), in.number("after"), false);
    }
    return in.has("after") ? kHeatFluxOverTwoMonths * (in.number("after") - in.number("before"))
                           : kHeatFluxOverOneMonth * (in.number("this") - in.number("before"));
}

double penman(const FigureInputs& in) {
    return in.conventions().depth(
        penmanMonteith(in.weather(), referenceCrop(in.text("crop") == "short" ? 1 : 0),
                       radiation(in), gammaOf(in), in.number("albedo", 0.23), in.conventions()));
}

double priestley(const FigureInputs& in) {
    return in.conventions().depth(priestleyTaylor(in.weather(), radiation(in), gammaOf(in),
                                                  in.number("albedo", 0.23), in.conventions()));
}

double hargreaves(const FigureInputs& in) {
    return hargreaves1985(in.number("Tmax"), in.number("Tmin"), radiation(in));
}

// Inches of the month through the calculator itself, as a run has them.
double penmanInches(const FigureInputs& in) {
    const Date d = in.date();
    return clsModels(nullptr).AscePM(
        true, in.text("crop") == "short" ? 1 : 0, in.number("Tmax"), in.number("Tmin"),
        in.number("Tdew", kMissing), in.vapourPressure(), kMissing, in.number("Rs"), in.wind(),
        in.number("G", 0), in.number("z"), in.number("lat"), d.day, d.month, d.year);
}

double hargreavesInches(const FigureInputs& in) {
    const Date d = in.date();
    return clsModels(nullptr).Hargreaves1985(in.number("Tmax"), in.number("Tmin"), in.number("lat"),
                                             d.day, d.month, d.year);
}

// A daily rate as the millimetres of its month.
double ofTheMonth(double rate, const FigureInputs& in) {
    const Date d = in.date();
    return kMillimetresPerInch *
           inchesOfMonth(rate, daysInMonth(d.month, d.year, in.conventions()));
}

// Of our radiation over that by the papers, percent.
double radiationShift(const FigureInputs& in) {
    const double papers = ExtraterrestrialRadiation(in.number("lat"), in.date(), kPaperConventions);
    return 100 * (radiation(in) / papers - 1);
}

double daylight(const FigureInputs& in) {
    double latitude = in.number("lat");
    return MonthlyDaylightPercentage(latitude, static_cast<int>(in.number("month")));
}

// Inches of the month; a coefficient k of the source takes the place of kt, which leaves t p / 100.
double consumptiveUse(const FigureInputs& in) {
    const double F = in.number("F");
    const double depth = blaneyCriddle(celsius(F), celsius(F), in.number("p"), in.conventions());
    if (!in.has("k")) return depth;
    return depth / climaticCoefficient(F, in.conventions()) * in.number("k");
}

using In = const FigureInputs&;

std::vector<Quantity> sunAndAir() {
    return {
        {"dr", "inverse relative distance of the sun", "", [](In in) { return sun(in).dr; }},
        {"declination", "solar declination", "rad", [](In in) { return sun(in).delta; }},
        {"omega", "sunset hour angle", "rad", [](In in) { return sun(in).omega; }},
        {"N", "daylight hours", "h", [](In in) { return 24 / std::numbers::pi * sun(in).omega; }},
        {"Ra", "extraterrestrial radiation", "MJ/m2 d", radiation},
        {"Ra shift", "Ra of ours over that of the papers, less 1", "%", radiationShift},
        {"pressure", "air pressure", "kPa", [](In in) { return gammaOf(in) / 0.000665; }},
        {"gamma", "psychrometric constant", "kPa/C", gammaOf},
        {"e0", "saturation vapour pressure", "kPa",
         [](In in) { return SaturationVapourPressure(in.number("T")); }},
        {"es", "mean saturation vapour pressure", "kPa", meanSaturation},
        {"ea", "actual vapour pressure", "kPa", vapourPressure},
        {"es-ea", "saturation deficit", "kPa", saturationDeficit},
        {"Delta", "slope of the vapour pressure curve", "kPa/C", slope},
        {"u2", "wind at 2 m, of a figure's inputs", "m/s", [](In in) { return in.wind(); }},
    };
}

std::vector<Quantity> energy() {
    return {
        {"Rs", "solar radiation estimated from temperatures", "MJ/m2 d",
         [](In in) {
             return solarRadiationFromRange(in.number("Ks"), in.number("Tmax"), in.number("Tmin"),
                                            radiation(in));
         }},
        {"Rso", "clear-sky radiation", "MJ/m2 d", [](In in) { return balance(in).Rso; }},
        {"Rns", "net solar radiation", "MJ/m2 d", [](In in) { return balance(in).Rns; }},
        {"Rnl", "net long-wave radiation", "MJ/m2 d", [](In in) { return balance(in).Rnl; }},
        {"Rn", "net radiation", "MJ/m2 d", [](In in) { return balance(in).Rn; }},
        {"G", "soil heat flux", "MJ/m2 d", heatFlux},
    };
}

std::vector<Quantity> evapotranspiration() {
    return {
        {"PM", "Penman-Monteith", "mm/d", penman},
        {"PM month", "Penman-Monteith", "mm/month",
         [](In in) { return ofTheMonth(penman(in), in); }},
        {"PM inches", "Penman-Monteith as a run has it", "in/month", penmanInches},
        {"PT", "Priestley-Taylor", "mm/d", priestley},
        {"Hargreaves", "Hargreaves 1985", "mm/d", hargreaves},
        {"Hargreaves month", "Hargreaves 1985", "mm/month",
         [](In in) { return ofTheMonth(hargreaves(in), in); }},
        {"Hargreaves inches", "Hargreaves 1985 as a run has it", "in/month", hargreavesInches},
        {"kt", "climatic coefficient of Blaney-Criddle", "",
         [](In in) { return climaticCoefficient(in.number("F"), in.conventions()); }},
        {"p", "the month's share of the year's daylight", "%", daylight},
        {"u", "consumptive use by Blaney-Criddle", "in/month", consumptiveUse},
    };
}

}  // namespace

const std::vector<Quantity>& quantities() {
    static const std::vector<Quantity> all = [] {
        std::vector<Quantity> listed = sunAndAir();
        for (const auto& more : {energy(), evapotranspiration()}) {
            listed.insert(listed.end(), more.begin(), more.end());
        }
        return listed;
    }();
    return all;
}

const Quantity& quantityNamed(const std::string& name) {
    const auto found = std::ranges::find(quantities(), name, &Quantity::name);
    if (found == quantities().end()) {
        throw PlatformError("No quantity is called \"" + name + "\"");
    }
    return *found;
}

}  // namespace velmora
