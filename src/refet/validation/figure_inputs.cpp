// SPDX-License-Identifier: MIT
#include "refet/validation/figure_inputs.h"

#include <array>
#include <cmath>
#include <sstream>

#include "gis/errors.h"
#include "gis/numbers.h"

namespace velmora {

namespace {

// A year of which the equations count 365 days.
constexpr int kYearOf365Days = 2000;

Date dayOf365(int J) {
    Date date{1, 1, kYearOf365Days};
    for (; date.month < 12; ++date.month) {
        const int next = DayOfYear(1, date.month + 1, kYearOf365Days);
        if (J < next) break;
    }
    date.day = J - DayOfYear(1, date.month, kYearOf365Days) + 1;
    return date;
}

Date dateOf(const std::string& text) {
    std::istringstream parts(text);
    std::array<int, 3> numbers{};
    for (int& number : numbers) {
        std::string part;
        std::getline(parts, part, '-');
        const auto value = strictNumber(part);
        if (!value) throw PlatformError("\"" + text + "\" is no date such as 15-7-2000");
        number = static_cast<int>(*value);
    }
    return {numbers[0], numbers[1], numbers[2]};
}

}  // namespace

double windSpeedAt2m(double speed, double height) {
    return speed * 4.87 / std::log(67.8 * height - 5.42);
}

FigureInputs::FigureInputs(const std::string& common, const std::string& own) {
    std::istringstream words(common + " " + own);
    for (std::string word; words >> word;) {
        const auto equals = word.find('=');
        if (equals == std::string::npos) {
            throw PlatformError("\"" + word + "\" is no input such as Tmax=24.5");
        }
        values_[word.substr(0, equals)] = word.substr(equals + 1);
    }
}

bool FigureInputs::is(const std::string& name, const std::string& value) const {
    return has(name) && values_.at(name) == value;
}

std::string FigureInputs::text(const std::string& name) const {
    if (!has(name)) throw PlatformError("the input " + name + " is missing");
    return values_.at(name);
}

double FigureInputs::number(const std::string& name) const {
    const auto value = strictNumber(text(name));
    if (!value) throw PlatformError("the input " + name + "=" + text(name) + " is no number");
    return *value;
}

double FigureInputs::number(const std::string& name, double otherwise) const {
    return has(name) ? number(name) : otherwise;
}

Date FigureInputs::date() const {
    return has("date") ? dateOf(text("date")) : dayOf365(static_cast<int>(number("J")));
}

const Conventions& FigureInputs::conventions() const {
    return is("choices", "papers") ? kPaperConventions : kOurConventions;
}

double FigureInputs::wind() const {
    return has("u") ? windSpeedAt2m(number("u"), number("at")) : number("u2", 0);
}

double FigureInputs::vapourPressure() const {
    if (!has("RHmax")) return number("ea", kMissing);
    return (SaturationVapourPressure(number("Tmin")) * number("RHmax") +
            SaturationVapourPressure(number("Tmax")) * number("RHmin")) /
           200;
}

CellWeather FigureInputs::weather() const {
    return {number("Tmax"),   number("Tmin"),         number("Tdew", kMissing),
            vapourPressure(), number("RH", kMissing), number("Rs"),
            wind(),           number("G", 0),         number("z", 0)};
}

}  // namespace velmora
