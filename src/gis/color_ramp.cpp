// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "gis/errors.h"
#include "gis/map_document.h"

namespace velmora {

namespace {

// CIE L*a*b* with the D65 white point of sRGB (IEC 61966-2-1).
constexpr std::array<double, 3> kWhite = {0.95047, 1.0, 1.08883};
using Triple = std::array<double, 3>;

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double companded(double channel) {
    return channel <= 0.0031308 ? channel * 12.92 : 1.055 * std::pow(channel, 1 / 2.4) - 0.055;
}

double labCurve(double t) {
    return t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116;
}

double labCurveInverse(double t) {
    return t * t * t > 216.0 / 24389 ? t * t * t : (116 * t - 16) * 27 / 24389;
}

Triple toLab(const Rgb& color) {
    const double r = linear(color.red / 255.0);
    const double g = linear(color.green / 255.0);
    const double b = linear(color.blue / 255.0);
    const double x = labCurve((0.4124564 * r + 0.3575761 * g + 0.1804375 * b) / kWhite[0]);
    const double y = labCurve((0.2126729 * r + 0.7151522 * g + 0.0721750 * b) / kWhite[1]);
    const double z = labCurve((0.0193339 * r + 0.1191920 * g + 0.9503041 * b) / kWhite[2]);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

std::int16_t channelByte(double value) {
    return static_cast<std::int16_t>(std::lround(std::clamp(companded(value), 0.0, 1.0) * 255));
}

Rgb fromLab(const Triple& lab) {
    const double fy = (lab[0] + 16) / 116;
    const double x = kWhite[0] * labCurveInverse(fy + lab[1] / 500);
    const double y = kWhite[1] * labCurveInverse(fy);
    const double z = kWhite[2] * labCurveInverse(fy - lab[2] / 200);
    return {channelByte(std::max(0.0, 3.2404542 * x - 1.5371385 * y - 0.4985314 * z)),
            channelByte(std::max(0.0, -0.9692660 * x + 1.8760108 * y + 0.0415560 * z)),
            channelByte(std::max(0.0, 0.0556434 * x - 0.2040259 * y + 1.0572252 * z))};
}

bool inRange(const Rgb& color) {
    const auto [low, high] = std::minmax({color.red, color.green, color.blue});
    return low >= 0 && high <= 255;
}

}  // namespace

std::vector<Rgb> AlgorithmicColorRamp::colors() const {
    if (!inRange(from) || !inRange(to)) {
        throw PlatformError("A colour of the ramp is outside 0 to 255");
    }
    if (size < 2) throw PlatformError("A colour ramp needs at least two colours");
    const Triple first = toLab(from);
    const Triple last = toLab(to);
    std::vector<Rgb> ramp;
    ramp.reserve(static_cast<std::size_t>(size));
    for (int i = 0; i < size; ++i) {
        const double share = static_cast<double>(i) / (size - 1);
        Triple lab{};
        for (std::size_t k = 0; k < 3; ++k) lab[k] = first[k] + share * (last[k] - first[k]);
        ramp.push_back(fromLab(lab));
    }
    return ramp;
}

}  // namespace velmora
