// SPDX-License-Identifier: MIT
#include "hosts/results/departures/effects.h"

#include <algorithm>
#include <cmath>

#include "gis/errors.h"
#include "refet/equations/blaney_criddle.h"
#include "refet/equations/penman_monteith.h"
#include "refet/equations/priestley_taylor.h"
#include "refet/equations/soil_heat_flux.h"
#include "refet/equations/solar_radiation.h"
#include "refet/validation/validation.h"

namespace velmora {

namespace {

constexpr double kAlbedo = 0.23;

const FigureGroup& groupTitled(const std::string& title) {
    const auto& groups = publishedFigures();
    const auto found = std::ranges::find(groups, title, &FigureGroup::title);
    if (found == groups.end()) throw PlatformError("No figures are called \"" + title + "\"");
    return *found;
}

// The first twelve months of a group of published months.
StationYear monthsOf(const std::string& title) {
    const FigureGroup& group = groupTitled(title);
    StationYear months;
    for (const Figure& figure : group.figures) {
        FigureInputs inputs(group.common, figure.inputs);
        if (!inputs.is("crop", "tall") || months.size() == 12) continue;
        months.push_back(std::move(inputs));
    }
    return months;
}

template <class Value>
Year eachMonth(Value value) {
    Year year{};
    for (int month = 1; month <= 12; ++month)
        year.at(static_cast<std::size_t>(month - 1)) = value(month);
    return year;
}

Date middleOf(int month) { return {representativeDay(month, kCommonYear), month, kCommonYear}; }

double percent(double value, double of) { return 100 * (value / of - 1); }

double radiation(const FigureInputs& in) {
    return ExtraterrestrialRadiation(in.number("lat"), in.date());
}

double penman(const FigureInputs& in, double G, int cropType = 1) {
    CellWeather weather = in.weather();
    weather.G = G;
    return penmanMonteith(weather, referenceCrop(cropType), radiation(in),
                          psychrometricConstant(weather.z), kAlbedo);
}

const FigureInputs& monthOf(const StationYear& station, int month) {
    return station.at(static_cast<std::size_t>(month - 1));
}

double meanTemperature(const StationYear& station, int month) {
    const FigureInputs& in = monthOf(station, month);
    return (in.number("Tmax") + in.number("Tmin")) / 2;
}

// Short reference ET from the balance, with the slope and the long-wave radiation taken by
// factors.
double penmanScaled(const FigureInputs& in, double slope, double longwave) {
    const CellWeather w = in.weather();
    const EnergyBalance b = energyBalance(w, radiation(in), psychrometricConstant(w.z), kAlbedo);
    const double es = (SaturationVapourPressure(w.Tmax) + SaturationVapourPressure(w.Tmin)) / 2;
    const double Delta = b.Delta * slope;
    return (0.408 * Delta * (b.Rns - longwave * b.Rnl) +
            b.gamma * 900 / (b.T + 273) * w.u2 * (es - b.ea)) /
           (Delta + b.gamma * (1 + 0.34 * w.u2));
}

// A day with a quarter of its clear-sky radiation.
CellWeather overcastDay(double T, double Ra) {
    constexpr double z = 500;
    const double Rs = 0.25 * (0.75 + 2e-5 * z) * Ra;
    return {T + 3, T - 3, T - 3, kMissing, kMissing, Rs, 2, 0, z};
}

}  // namespace

StationYear fallon2015() { return monthsOf("Ref-ET, months: Fallon 2015"); }
StationYear maricopa2003() { return monthsOf("Ref-ET, months: Maricopa 2003, 2004 and 2020"); }

Year sunShift(double latitude) {
    return eachMonth([&](int month) {
        const int day = representativeDay(month, kCommonYear, kPaperConventions);
        return percent(
            ExtraterrestrialRadiation(latitude, {day, month, kCommonYear}),
            ExtraterrestrialRadiation(latitude, {day, month, kCommonYear}, kPaperConventions));
    });
}

Year tenthOfADegree(double latitude) {
    return eachMonth([&](int month) {
        return percent(ExtraterrestrialRadiation(latitude + 0.1, middleOf(month)),
                       ExtraterrestrialRadiation(latitude, middleOf(month)));
    });
}

HeatFluxYear heatFluxYear(const StationYear& station) {
    HeatFluxYear year{};
    double withOurs = 0;
    double withPapers = 0;
    for (int month = 1; month <= 12; ++month) {
        const auto k = static_cast<std::size_t>(month - 1);
        const bool end = month == 1 || month == 12;
        year.ours.at(k) = soilHeatFlux(meanTemperature(station, std::max(1, month - 1)),
                                       meanTemperature(station, std::min(12, month + 1)), end);
        year.papers.at(k) =
            kHeatFluxOverTwoMonths * (meanTemperature(station, month % 12 + 1) -
                                      meanTemperature(station, (month + 10) % 12 + 1));
        const FigureInputs& in = monthOf(station, month);
        const double ours = penman(in, year.ours.at(k));
        const double papers = penman(in, year.papers.at(k));
        const int days = daysInMonth(month, kCommonYear, kPaperConventions);
        year.percent.at(k) = percent(ours, papers);
        withOurs += days * ours;
        withPapers += days * papers;
    }
    year.percentOfYear = percent(withOurs, withPapers);
    return year;
}

Year overcast(double latitude) {
    return eachMonth([&](int month) {
        const double Ra = ExtraterrestrialRadiation(latitude, middleOf(month));
        const CellWeather day = overcastDay(5, Ra);
        const double gamma = psychrometricConstant(day.z);
        return percent(penmanMonteith(day, referenceCrop(1), Ra, gamma, kAlbedo),
                       penmanMonteith(day, referenceCrop(1), Ra, gamma, kAlbedo,
                                      {.lowestClearness = kPaperConventions.lowestClearness}));
    });
}

double leastClearness(const StationYear& station) {
    double least = 1;
    for (const FigureInputs& in : station) {
        const CellWeather w = in.weather();
        const EnergyBalance b =
            energyBalance(w, radiation(in), psychrometricConstant(w.z), kAlbedo);
        least = std::min(least, w.Rs / b.Rso);
    }
    return least;
}

double overcastLongwave(double T) {
    const CellWeather day = overcastDay(T, 20);
    const double gamma = psychrometricConstant(day.z);
    return energyBalance(day, 20, gamma, kAlbedo, kPaperConventions).Rnl -
           energyBalance(day, 20, gamma, kAlbedo).Rnl;
}

BlaneyCriddleJanuary blaneyCriddleJanuary(double latitude, double fahrenheit) {
    const double p = MonthlyDaylightPercentage(latitude, 1);
    const double T = (fahrenheit - 32) * 5 / 9;
    return {blaneyCriddle(T, T, p), blaneyCriddle(T, T, p, kPaperConventions)};
}

Year daylightError(double latitude) {
    const FigureGroup& group =
        groupTitled("Daylight of the months, percent of the year, 20 to 50 N");
    Year year{};
    for (const Figure& figure : group.figures) {
        const FigureInputs inputs(group.common, figure.inputs);
        if (inputs.number("lat") != latitude) continue;
        double radians = latitude;
        const auto month = static_cast<int>(inputs.number("month"));
        year.at(static_cast<std::size_t>(month - 1)) =
            percent(MonthlyDaylightPercentage(radians, month), figure.value);
    }
    return year;
}

double latentHeat(double T) { return percent(2.45, 2.501 - 0.002361 * T); }

Year slopeNumerator(const StationYear& station) {
    return eachMonth([&](int month) {
        const FigureInputs& in = monthOf(station, month);
        return percent(penmanScaled(in, 1, 1), penmanScaled(in, 2503.0 / 2504, 1));
    });
}

Year stefanBoltzmann(const StationYear& station) {
    return eachMonth([&](int month) {
        const FigureInputs& in = monthOf(station, month);
        return percent(penmanScaled(in, 1, 1), penmanScaled(in, 1, 4.903 / 4.901));
    });
}

Year tallOverShort(const StationYear& station) {
    return eachMonth([&](int month) {
        const FigureInputs& in = monthOf(station, month);
        return penman(in, 0, 0) / penman(in, 0);
    });
}

Year priestleyTaylorOverShort(const StationYear& station) {
    return eachMonth([&](int month) {
        const FigureInputs& in = monthOf(station, month);
        const CellWeather w = in.weather();
        return priestleyTaylor(w, radiation(in), psychrometricConstant(w.z), kAlbedo) /
               penman(in, 0);
    });
}

std::vector<double> meansOverDays(const std::string& group) {
    std::vector<double> errors;
    std::string last;
    const std::vector<FigureGroup> groups = {groupTitled(group)};
    const std::vector<ComparedGroup> results = compared(groups);
    for (const Comparison& c : results.at(0).figures) {
        const FigureInputs inputs(groups[0].common, c.figure->inputs);
        // Of two figures of a month the first has the clear-sky radiation that we have.
        if (!inputs.is("crop", "short") || inputs.text("date") == last) continue;
        last = inputs.text("date");
        errors.push_back(percent(c.ours, c.figure->value));
    }
    return errors;
}

}  // namespace velmora
