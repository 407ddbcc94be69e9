// SPDX-License-Identifier: MIT
// Every line of tests/data/published_figures.txt against the equations.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>

#include "gis/numbers.h"
#include "refet/cls_models.h"
#include "refet/equations/blaney_criddle.h"
#include "refet/equations/calendar.h"
#include "refet/equations/energy_balance.h"
#include "refet/equations/hargreaves.h"
#include "refet/equations/solar_radiation.h"

namespace velmora {
namespace {

class Inputs {
  public:
    explicit Inputs(const std::string& text) {
        std::istringstream words(text);
        for (std::string word; words >> word;) {
            const auto equals = word.find('=');
            values_[word.substr(0, equals)] = word.substr(equals + 1);
        }
    }
    double number(const std::string& name) const { return strictNumber(values_.at(name)).value(); }
    double number(const std::string& name, double otherwise) const {
        return values_.contains(name) ? number(name) : otherwise;
    }
    bool is(const std::string& name, const std::string& value) const {
        return values_.contains(name) && values_.at(name) == value;
    }
    Date date() const {
        Date d;
        const std::string& text = values_.at("date");
        const auto first = text.find('-');
        const auto second = text.find('-', first + 1);
        d.day = std::stoi(text.substr(0, first));
        d.month = std::stoi(text.substr(first + 1, second - first - 1));
        d.year = std::stoi(text.substr(second + 1));
        return d;
    }

  private:
    std::map<std::string, std::string> values_;
};

double mmPerDay(double inches, const Date& d) {
    return inches * 25.4 / DaysInMonth(d.month, d.year);
}

using Quantity = std::function<double(const Inputs&)>;

double penman(const Inputs& in) {
    const Date d = in.date();
    const clsModels models(nullptr);
    return mmPerDay(models.AscePM(true, in.is("crop", "short") ? 1 : 0, in.number("Tmax"),
                                  in.number("Tmin"), in.number("Tdew", 999), in.number("ea", 999),
                                  999, in.number("Rs"), in.number("u2"), in.number("G", 0),
                                  in.number("z"), in.number("lat"), d.day, d.month, d.year),
                    d);
}

double priestley(const Inputs& in) {
    const Date d = in.date();
    clsModels models(nullptr);
    models.setAlbedo(in.number("albedo", 0.23));
    return mmPerDay(
        models.Taylor(true, 0, in.number("Tmax"), in.number("Tmin"), in.number("Tdew", 999),
                      in.number("ea", 999), 999, in.number("Rs"), 0, in.number("G", 0),
                      in.number("z"), in.number("lat"), d.day, d.month, d.year),
        d);
}

double hargreaves(const Inputs& in) {
    const Date d = in.date();
    return mmPerDay(clsModels(nullptr).Hargreaves1985(in.number("Tmax"), in.number("Tmin"),
                                                      in.number("lat"), d.day, d.month, d.year),
                    d);
}

// At sea level the clear-sky radiation is three quarters of the extraterrestrial.
double netLongwave(const Inputs& in) {
    const CellWeather w{
        in.number("Tmax"), in.number("Tmin"), 999, in.number("ea"), 999, in.number("Rs"), 0, 0, 0};
    return (1 - 0.23) * in.number("Rs") - energyBalance(w, in.number("Rso") / 0.75, 0.066, 0.23).Rn;
}

double gammaOf(const Inputs& in) { return psychrometricConstant(in.number("z")); }

double climaticCoefficient(const Inputs& in) {
    const double F = in.number("F");
    const double celsius = (F - 32) * 5 / 9;
    return blaneyCriddle(celsius, celsius, 10) * 100 / (10 * F);
}

double daylight(const Inputs& in) {
    double latitude = in.number("lat");
    return MonthlyDaylightPercentage(latitude, static_cast<int>(in.number("month")));
}

const std::map<std::string, Quantity>& quantities() {
    static const std::map<std::string, Quantity> all = {
        {"PM", penman},
        {"PT", priestley},
        {"Hargreaves", hargreaves},
        {"netLongwave", netLongwave},
        {"gamma", gammaOf},
        {"pressure", [](const Inputs& in) { return gammaOf(in) / 0.000665; }},
        {"kt", climaticCoefficient},
        {"daylight", daylight},
        {"saturation", [](const Inputs& in) { return SaturationVapourPressure(in.number("T")); }},
        {"humidity",
         [](const Inputs& in) {
             return VapourPressureFromHumidity(in.number("Tmax"), in.number("Tmin"),
                                               in.number("RH"));
         }},
        {"Ra",
         [](const Inputs& in) { return ExtraterrestrialRadiation(in.number("lat"), in.date()); }}};
    return all;
}

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? ""
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

TEST(PublishedFigures, AreMetWithinTheirTolerances) {
    std::ifstream file(VELMORA_TEST_DATA "/published_figures.txt");
    ASSERT_TRUE(file);
    std::map<std::string, int> seen;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream parts(line);
        std::string part[5];
        for (auto& p : part) {
            ASSERT_TRUE(std::getline(parts, p, '|')) << line;
            p = trimmed(p);
        }
        const auto quantity = quantities().find(part[0]);
        ASSERT_NE(quantity, quantities().end()) << line;
        EXPECT_NEAR(quantity->second(Inputs(part[1])), strictNumber(part[2]).value(),
                    strictNumber(part[3]).value())
            << line;
        ++seen[part[0]];
    }
    for (const auto& [name, function] : quantities()) EXPECT_GT(seen[name], 0) << name;
}

TEST(PublishedFigures, TenDaysOfGreeleyAddUp) {
    std::ifstream file(VELMORA_TEST_DATA "/published_figures.txt");
    double tall = 0;
    double grass = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.find("Greeley") == std::string::npos) continue;
        const std::string inputs = line.substr(line.find('|') + 1);
        const double value = penman(Inputs(inputs.substr(0, inputs.find('|'))));
        (line.find("crop=tall") != std::string::npos ? tall : grass) += value;
    }
    EXPECT_NEAR(grass, 65.79, 0.05);
    EXPECT_NEAR(tall, 84.58, 0.05);
}

}  // namespace
}  // namespace velmora
