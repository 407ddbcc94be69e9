// SPDX-License-Identifier: MIT
#include "hosts/results/departures/departures_page.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <vector>

#include "gis/month_names.h"
#include "hosts/results/departures/effects.h"
#include "hosts/results/departures/sample_basin.h"

namespace velmora {

namespace {

constexpr std::array kLatitudes = {25.0, 30.0, 35.0, 40.0, 45.0, 50.0};
constexpr std::array kDaylightLatitudes = {20.0, 24.0, 30.0, 36.0, 40.0, 44.0, 50.0};
constexpr double kFebruaryOfCommonYear = 100 * (29.0 / 28 - 1);  // percent
constexpr double kFebruaryOfLeapYear = 100 * (28.0 / 29 - 1);
constexpr const char* kFallon = "Ref-ET, months: Fallon 2015";
constexpr const char* kMaricopa = "Ref-ET, months: Maricopa 2003, 2004 and 2020";

std::string monthHead(const std::string& first) {
    std::string text = "| " + first + " |";
    std::string rule = "|---|";
    for (int month = 1; month <= 12; ++month) {
        text += " " + GetMonthName(month) + " |";
        rule += "---:|";
    }
    return text + "\n" + rule + "\n";
}

// Values of 0 stand without a sign.
std::string number(double value, int places, bool withSign) {
    const std::string text =
        withSign ? fmt::format("{:+.{}f}", value, places) : fmt::format("{:.{}f}", value, places);
    return text.find_first_of("123456789") == std::string::npos
               ? fmt::format("{:.{}f}", 0.0, places)
               : text;
}

std::string row(const std::string& first, std::span<const double> values, int places,
                bool withSign = true) {
    std::string text = "| " + first + " |";
    for (const double value : values) text += " " + number(value, places, withSign) + " |";
    return text + "\n";
}

std::string byLatitude(Year (*effect)(double), std::span<const double> latitudes, int places) {
    std::string table = monthHead("north");
    for (const double latitude : latitudes) {
        table += row(fmt::format("{:g}", latitude), effect(latitude), places);
    }
    return table;
}

// "-4.9 to +2.3 %" of all values.
std::string rangeOf(std::initializer_list<std::vector<double>> lists, int places) {
    std::vector<double> all;
    for (const auto& list : lists) all.insert(all.end(), list.begin(), list.end());
    const auto [least, most] = std::ranges::minmax_element(all);
    return number(*least, places, true) + " to " + number(*most, places, true) + " %";
}

std::vector<double> list(const Year& year) { return {year.begin(), year.end()}; }

// Of January and December.
std::vector<double> ends(const Year& year) { return {year.front(), year.back()}; }

std::vector<double> daylightErrors() {
    std::vector<double> errors;
    for (const double latitude : kDaylightLatitudes) {
        for (const double error : daylightError(latitude)) errors.push_back(error);
    }
    return errors;
}

std::string summaryRow(const std::string& what, const std::string& place, const std::string& ours,
                       const std::string& paper, const std::string& worth,
                       const std::string& standard) {
    return fmt::format("| [{}](#{}) | {} | {} | {} | {} |\n", what, place, ours, paper, worth,
                       standard);
}

std::string takenBack() {
    const HeatFluxYear fallon = heatFluxYear(fallon2015());
    const HeatFluxYear maricopa = heatFluxYear(maricopa2003());
    return summaryRow("year", "the-year", "366 days in common years",
                      "365 days (ASCE-EWRI 2005, 23 and 24; FAO-56, 23 and 24)",
                      rangeOf({list(sunShift(40))}, 1) + " of radiation at 40 N, " +
                          rangeOf({list(sunShift(50))}, 1) + " at 50 N, 0 in leap years",
                      "yes") +
           summaryRow("February", "the-year", "29 days in common years, 28 in leap years",
                      "the calendar's",
                      fmt::format("{:+.1f} %, {:+.1f} % of February's depth", kFebruaryOfCommonYear,
                                  kFebruaryOfLeapYear),
                      "yes") +
           summaryRow("soil heat flux", "soil-heat-flux",
                      "0.0389 per deg C from the month before to the month after",
                      "0.07 (FAO-56, 43; ASCE-EWRI, 31)",
                      rangeOf({list(fallon.percent), list(maricopa.percent)}, 1) +
                          " of a month at two stations, " +
                          rangeOf({{fallon.percentOfYear, maricopa.percentOfYear}}, 1) +
                          " of the year",
                      "yes") +
           summaryRow(
               "that of January and December", "soil-heat-flux",
               "0.0778 per deg C over one month of the same year",
               "the months around, or 0.14 (FAO-56, 44; ASCE-EWRI, 32)",
               rangeOf({ends(fallon.percent), ends(maricopa.percent)}, 1) + " of these months",
               "yes") +
           summaryRow("clear-sky ratio", "the-clear-sky-ratio", "Rs / Rso not below 0.25",
                      "not below 0.3 (ASCE-EWRI, 18); no bound (FAO-56)",
                      "0 from a ratio of 0.3 on; below, up to " +
                          number(std::ranges::max(overcast(50)), 0, true) + " % at 50 N",
                      "yes, 0.3 for all") +
           summaryRow(
               "Blaney-Criddle below 36 deg F", "blaney-criddle-below-36-deg-f",
               "kt goes on falling", "kt is 0.30 (TR-21)",
               fmt::format("{:.2f} for {:.2f} inches in January at 25 deg F, 40 N",
                           blaneyCriddleJanuary(40, 25).ours, blaneyCriddleJanuary(40, 25).papers),
               "yes") +
           summaryRow("depths below 0", "depths-below-0", "stay", "cut, or told, as a rule",
                      fmt::format("{:.0f} % of the sample basin's cells in December",
                                  kSampleBasin.back().percentBelowZero),
                      "yes, cut");
}

std::string left() {
    const StationYear fallon = fallon2015();
    const StationYear maricopa = maricopa2003();
    return summaryRow("slope of the vapour pressure curve", "small-constants", "2504",
                      "2503 (ASCE-EWRI), 4098 x 0.6108 (FAO-56)",
                      rangeOf({list(slopeNumerator(fallon)), list(slopeNumerator(maricopa))}, 3),
                      "no") +
           summaryRow("Stefan-Boltzmann constant", "small-constants", "4.901e-9 by all methods",
                      "4.901e-9 (ASCE-EWRI), 4.903e-9 (FAO-56, method 3)",
                      rangeOf({list(stefanBoltzmann(fallon)), list(stefanBoltzmann(maricopa))}, 3),
                      "no") +
           summaryRow("latent heat of Hargreaves", "latent-heat-of-hargreaves",
                      "of the mean temperature", "2.45",
                      rangeOf({{latentHeat(-20), latentHeat(35)}}, 1) + " from -20 to 35 deg C",
                      "no") +
           summaryRow("daylight of Blaney-Criddle", "daylight-of-blaney-criddle",
                      "one day of the month", "the month's",
                      rangeOf({daylightErrors()}, 1) + " from 20 to 50 N", "no") +
           summaryRow("crop coefficient of Blaney-Criddle", "for-which-crop", "none: kt t p / 100",
                      "kc kt t p / 100 (TR-21)", "the crop's kc", "no") +
           summaryRow(
               "monthly means", "monthly-means", "one day of mean weather stands for the month",
               "days, summed up",
               rangeOf({meansOverDays(kFallon), meansOverDays(kMaricopa)}, 1) + " at two stations",
               "no") +
           summaryRow("latitude", "where-a-cell-lies", "of the row at the domain's left edge",
                      "the cell's own",
                      rangeOf({list(tenthOfADegree(40))}, 1) +
                          " of radiation for a tenth of a degree at 40 N",
                      "no") +
           summaryRow("elevation", "where-a-cell-lies", "of the DEM cell at the centre",
                      "the mean of the cell's land", "the terrain's", "no");
}

std::string summary() {
    return "| what | ours | the paper | worth | in `--standard` |\n|---|---|---|---|---|\n" +
           takenBack() + left();
}

std::string yearSection() {
    return R"(## The year

The leap rule is turned around: years that are a multiple of 4 count 365 days to the sun's course and 28 in February,
the others 366 and 29. In leap years the sun is the papers', since they count 365 days in every year. In common years
extraterrestrial radiation is off by this much, percent, on the day that stands for the month (methods 1 to 4 and 6):

)" + byLatitude(sunShift, std::array{25.0, 30.0, 35.0, 40.0, 45.0, 50.0, 55.0, 60.0}, 2) +
           fmt::format(R"(
February's depth is {:+.1f} % in a common year and {:+.1f} % in a leap year, by the count of its days.

)",
                       kFebruaryOfCommonYear, kFebruaryOfLeapYear);
}

std::string heatFluxRows(const std::string& name, const StationYear& station) {
    const HeatFluxYear year = heatFluxYear(station);
    return row(name + ": ours", year.ours, 2) + row("the papers'", year.papers, 2) +
           row("short reference ET, %", year.percent, 1);
}

std::string heatFluxSection() {
    return R"(## Soil heat flux

Ours is 0.35 / 18 of the change in the sum of maximum and minimum temperature, that is 0.0389 per deg C of the mean:
five ninths of the papers' 0.07, which is what 0.07 per deg C is per deg F. For January (from January to February) and
December (from November to December) it is 0.0778, five ninths of 0.14. Too little heat goes into the soil in
spring, so that ours is high, and too little comes out in autumn, so that it is low. MJ m-2 d-1, and what it does to methods 2
and 3, at two stations with the monthly means that stand in [Validation](validation.md):

)" + monthHead("station") +
           heatFluxRows("Fallon, Nevada (39.5 N), 2015", fallon2015()) +
           heatFluxRows("Maricopa, Arizona (33.1 N), 2003", maricopa2003()) +
           fmt::format("\nOver the year that is {:+.2f} % at Fallon and {:+.2f} % at Maricopa.\n\n",
                       heatFluxYear(fallon2015()).percentOfYear,
                       heatFluxYear(maricopa2003()).percentOfYear);
}

std::string clearSkySection() {
    std::string table = "| mean temperature, deg C | MJ m-2 d-1 |\n|---|---:|\n";
    for (const double T : {-10.0, 0.0, 10.0, 20.0}) {
        table += fmt::format("| {:g} | {:.2f} |\n", T, overcastLongwave(T));
    }
    return R"(## The clear-sky ratio

Where solar radiation is less than 0.3 of the clear sky's, ours loses less long-wave radiation, and below 0.26 it
gains some. At worst, at a ratio of 0.25 in saturated air:

)" + table +
           R"(
By how much short reference ET is higher on such a day, percent, by latitude and month (mean temperature 5 deg C, daily
range 6, wind 2 m/s, 500 m). With a ratio of 0.3 or more the effect is 0, and the mean of a month is seldom so
low: )" +
           fmt::format("the least of a year is {:.2f} at Fallon and {:.2f} at Maricopa.\n\n",
                       leastClearness(fallon2015()), leastClearness(maricopa2003())) +
           byLatitude(overcast, kLatitudes, 1) + "\n";
}

std::string blaneyCriddleSection() {
    std::string table =
        "| deg F | 30 N, ours | TR-21 | 40 N, ours | TR-21 | 50 N, ours | TR-21 |\n"
        "|---|---:|---:|---:|---:|---:|---:|\n";
    for (const double F : {-20.0, -10.0, 0.0, 10.0, 18.0, 25.0, 30.0, 35.0, 36.0}) {
        table += fmt::format("| {:g} |", F);
        for (const double latitude : {30.0, 40.0, 50.0}) {
            const BlaneyCriddleJanuary january = blaneyCriddleJanuary(latitude, F);
            table += " " + number(january.ours, 2, false) + " | " +
                     number(january.papers, 2, false) + " |";
        }
        table += "\n";
    }
    return R"(## Blaney-Criddle below 36 deg F

TR-21 holds the climatic coefficient at 0.30 below 36 deg F. Ours is the line 0.0173 t - 0.314 at all temperatures: the depth
is below 0 between 0 and 18.2 deg F, and grows again below 0 deg F, where both factors are negative. Inches of
January at a mean temperature (`--standard` cuts what is below 0):

)" + table +
           "\n";
}

std::string belowZeroSection() {
    std::vector<double> below;
    std::vector<double> minimum;
    std::vector<double> mean;
    std::vector<double> papers;
    std::vector<double> percent;
    for (const SampleMonth& month : kSampleBasin) {
        below.push_back(month.percentBelowZero);
        minimum.push_back(month.minimum);
        mean.push_back(month.mean);
        papers.push_back(month.meanOfPapers);
        percent.push_back(100 * (month.meanOfPapers / month.mean - 1));
    }
    return R"(## Depths below 0

Penman-Monteith and Priestley-Taylor are below 0 where the radiation balance is, or where the dew point is above the air's
temperature, which surfaces that are extrapolated above the highest station can make. Such depths are stored as
they are, and months with a crop coefficient carry them into crop ET; the net requirement is cut at 0. In the sample
basin by method 2, as `velmora demo basin` and `velmora --settings-folder basin/settings run refet --standard` make
it, with all of the papers' choices in the last lines:

)" + monthHead("sample basin, 2023") +
           row("cells below 0, %", below, 1, false) + row("least cell, inches", minimum, 2, false) +
           row("mean, inches", mean, 3, false) +
           row("mean by the papers' choices", papers, 3, false) +
           row("their difference, %", percent, 1) + "\n";
}

std::string constantsSection() {
    const StationYear fallon = fallon2015();
    std::string table = "| deg C | % |\n|---|---:|\n";
    for (const double T : {-20.0, -10.0, 0.0, 10.0, 20.0, 30.0, 35.0}) {
        table += fmt::format("| {:g} | {} |\n", T, number(latentHeat(T), 2, true));
    }
    return R"(## Small constants

Short reference ET at Fallon, 2015, percent:

)" + monthHead("constant") +
           row("2504 against 2503", slopeNumerator(fallon), 3) +
           row("4.901e-9 against 4.903e-9", stefanBoltzmann(fallon), 3) + R"(
## Latent heat of Hargreaves

Hargreaves and Samani divide by a latent heat of 2.45 MJ/kg; ours is that of the mean temperature, 2.501 - 0.002361 T:

)" + table +
           R"(
## Daylight of Blaney-Criddle

Ours is the share of one day times the days of the month (28 in February); December takes day 340. Against the table of
ASCE Manual 70, percent:

)" + byLatitude(daylightError, kDaylightLatitudes, 1) +
           "\n";
}

// From March to October.
std::vector<double> season(const std::vector<double>& months) {
    return {months.begin() + 2, months.begin() + 10};
}

std::string meansSection() {
    const std::vector<double> maricopa = meansOverDays(kMaricopa);
    std::string text = R"(## Monthly means

An equation of a month's mean weather is not the mean of its days' results. Short reference ET of one day of mean weather over the
published sum of days, percent (February counts 29 days in the common years 2003 and 2015, 28 in the others). At
Fallon the sums have a full clear-sky radiation, at Maricopa (FAO-56) the simple one that we have:

)" + monthHead("year") +
                       row("Fallon 2015", meansOverDays(kFallon), 1);
    for (std::size_t k = 0; k < 3; ++k) {
        text += row(fmt::format("Maricopa {}", std::array{2003, 2004, 2020}.at(k)),
                    std::span(maricopa).subspan(12 * k, 12), 1);
    }
    return text + "\nFrom March to October that is " +
           rangeOf({season(meansOverDays(kFallon))}, 1) + " at Fallon and " +
           rangeOf({season(maricopa)}, 1) + " at Maricopa in 2003.\n\n";
}

std::string cropSection() {
    return R"(## For which crop

Method 1 is reference ET of alfalfa, methods 2 to 4 of grass, method 6 evaporation of a wet surface in still
air, and method 5 no reference ET at all, but TR-21's consumptive use without its crop coefficient. A table of coefficients
goes with one of them: with grass coefficients (FAO-56's) method 1 makes crop ET too high by the first ratio,
and only TR-21's own kc belong to method 5.

)" + monthHead("ratio to short reference ET") +
           row("tall reference, Fallon 2015", tallOverShort(fallon2015()), 2, false) +
           row("tall reference, Maricopa 2003", tallOverShort(maricopa2003()), 2, false) +
           row("Priestley-Taylor, Fallon 2015", priestleyTaylorOverShort(fallon2015()), 2, false) +
           row("Priestley-Taylor, Maricopa 2003", priestleyTaylorOverShort(maricopa2003()), 2,
               false) +
           "\n";
}

std::string placeSection() {
    return R"(## Where a cell lies

All cells of a row have the latitude that the row has at the domain's left edge. In a projected domain the rows are not
parallels; by how much the latitude changes along a row can be read off the map. For each tenth of a degree by which a cell lies
farther south than the left edge, its extraterrestrial radiation is off by, percent:

)" + byLatitude(tenthOfADegree, kLatitudes, 2) +
           R"(
The elevation of a cell is that of the DEM cell that holds its centre, and not the mean over the cell: with cells that are much
coarser than the DEM, single cells have the weather of a ridge or a valley, though a basin's mean hardly changes.
)";
}

}  // namespace

std::string departuresPage() {
    return R"(# Where our method departs from the papers

The six methods of reference ET follow published equations ([Methods](methods.md)), but not in every choice. This page lists
each departure with what it is worth. Nothing of it is an error of the program: the choices are part of
the method, and every result of `velmora` rests on them. Who compares results with those of other programs, or has to defend
them, should know their size.

`velmora run refet --standard` computes the same run with the papers' choices beside our own, into grids named
`RefETstd_...` that no step reads, and tells what they change on your data; the report has the difference by month and
zone. The last column says which departures it takes back.

Every figure on this page is computed by the program: `velmora validate --departures` prints the page, and a test holds it to
what the program gives, that of the sample basin included.

)" + summary() +
           "\n" + yearSection() + heatFluxSection() + clearSkySection() + blaneyCriddleSection() +
           belowZeroSection() + constantsSection() + meansSection() + cropSection() +
           placeSection();
}

}  // namespace velmora
