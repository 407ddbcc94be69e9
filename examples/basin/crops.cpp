// SPDX-License-Identifier: MIT
#include "examples/basin/crops.h"

#include <cmath>

namespace velmora::examples {

namespace {

// Stage lengths in days (initial, development, middle, late) and the coefficients of the initial
// and middle stage and of the season's end.
struct GrowthStages {
    const char* name;
    int plantingDay;  // of the year
    std::array<int, 4> lengths;
    double initial;
    double middle;
    double end;
};

const std::array<GrowthStages, 8> kCrops = {{
    {"Alfalfa", 100, {10, 30, 120, 30}, 0.40, 0.95, 0.90},
    {"Barley", 100, {20, 25, 60, 30}, 0.30, 1.15, 0.25},
    {"Spring Wheat", 95, {20, 25, 60, 30}, 0.30, 1.15, 0.25},
    {"Potatoes", 120, {45, 30, 70, 20}, 0.50, 1.15, 0.75},
    {"Sugar Beets", 105, {50, 40, 50, 40}, 0.35, 1.20, 0.70},
    {"Dry Beans", 152, {25, 25, 30, 20}, 0.40, 1.15, 0.35},
    {"Corn", 125, {30, 40, 50, 40}, 0.30, 1.20, 0.60},
    {"Pasture", 95, {10, 20, 130, 30}, 0.40, 0.95, 0.85},
}};

constexpr std::array<int, 13> kMonthStarts = {1,   32,  60,  91,  121, 152, 182,
                                              213, 244, 274, 305, 335, 366};

double coefficientOn(const GrowthStages& crop, int dayOfYear) {
    const auto& [first, second, third, fourth] = crop.lengths;
    const int day = dayOfYear - crop.plantingDay;
    if (day < 0 || day >= first + second + third + fourth) return 0;
    if (day < first) return crop.initial;
    if (day < first + second) {
        return std::lerp(crop.initial, crop.middle, static_cast<double>(day - first) / second);
    }
    if (day < first + second + third) return crop.middle;
    return std::lerp(crop.middle, crop.end,
                     static_cast<double>(day - first - second - third) / fourth);
}

}  // namespace

std::vector<CropCurve> cropCurves() {
    std::vector<CropCurve> curves;
    for (const GrowthStages& crop : kCrops) {
        CropCurve curve{crop.name, {}};
        for (std::size_t m = 0; m < 12; ++m) {
            double sum = 0;
            for (int day = kMonthStarts[m]; day < kMonthStarts[m + 1]; ++day) {
                sum += coefficientOn(crop, day);
            }
            const double mean = sum / (kMonthStarts[m + 1] - kMonthStarts[m]);
            curve.monthly[m] = std::round(mean * 1000) / 1000;
        }
        curves.push_back(curve);
    }
    return curves;
}

}  // namespace velmora::examples
