// SPDX-License-Identifier: MIT
#include "examples/basin/terrain.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace velmora::examples {

namespace {

constexpr double kLowest = 1200;
constexpr double kHighest = 3400;

// A number of 0 to 1 that belongs to a lattice point.
double latticeValue(std::int64_t x, std::int64_t y) {
    auto h = static_cast<std::uint64_t>(x * 374761393 + y * 668265263 + 1442695);
    h = (h ^ (h >> 13U)) * 1274126177U;
    h = (h ^ (h >> 16U)) * 2246822519U;
    return static_cast<double>((h >> 20U) & 0xFFFFU) / 65535.0;
}

double smooth(double t) { return t * t * (3 - 2 * t); }

// Value noise: lattice values with a smooth way between them.
double noise(double x, double y) {
    const auto xi = static_cast<std::int64_t>(std::floor(x));
    const auto yi = static_cast<std::int64_t>(std::floor(y));
    const double fx = smooth(x - std::floor(x));
    const double fy = smooth(y - std::floor(y));
    const double top = std::lerp(latticeValue(xi, yi), latticeValue(xi + 1, yi), fx);
    const double bottom = std::lerp(latticeValue(xi, yi + 1), latticeValue(xi + 1, yi + 1), fx);
    return std::lerp(top, bottom, fy);
}

// Ridged noise of five octaves, 0 to about 1: crests where the noise crosses its middle.
double ridges(double x, double y) {
    double sum = 0;
    double amplitude = 0.5;
    for (int octave = 0; octave < 5; ++octave, x *= 2.07, y *= 2.03, amplitude *= 0.5) {
        sum += amplitude * (1 - std::fabs(2 * noise(x + 17 * octave, y + 31 * octave) - 1));
    }
    return sum;
}

// u runs from west to east, v from north to south, both 0 to 1.
double shape(double u, double v) {
    const double axis = 0.45 + 0.07 * std::sin(2 * std::numbers::pi * (0.9 * v + 0.1));
    const double away = std::fabs(u - axis) / (u < axis ? axis : 1 - axis);
    const double rise = smooth(std::clamp((away - 0.22) / 0.72, 0.0, 1.0));
    const double headwaters = 0.10 * smooth(std::clamp((0.35 - v) / 0.35, 0.0, 1.0));
    return 0.02 * noise(14 * u, 16 * v) + 0.05 * (1 - v) + headwaters +
           rise * (0.35 + 0.75 * ridges(6 * u, 7 * v));
}

}  // namespace

GridGeometry basinGeometry(const std::string& crs) { return {250, 300, 390000, 4850000, 200, crs}; }

Grid basinTerrain(const GridGeometry& geometry) {
    Grid terrain(geometry);
    double low = 1e9;
    double high = -1e9;
    for (int r = 0; r < geometry.rows; ++r) {
        for (int c = 0; c < geometry.columns; ++c) {
            const double z = shape((c + 0.5) / geometry.columns, (r + 0.5) / geometry.rows);
            terrain.at(c, r) = static_cast<float>(z);
            low = std::min(low, z);
            high = std::max(high, z);
        }
    }
    for (float& z : terrain.values) {
        const double share = (static_cast<double>(z) - low) / (high - low);
        z = static_cast<float>(std::round((kLowest + share * (kHighest - kLowest)) * 10) / 10);
    }
    return terrain;
}

}  // namespace velmora::examples
