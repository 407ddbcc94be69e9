// SPDX-License-Identifier: MIT
// The factors between units, each written here alone.
#pragma once

namespace velmora {

constexpr double kMetresPerFoot = 0.3048;
constexpr double kMillimetresPerFoot = 304.8;
constexpr double kMillimetresPerInch = 25.4;
constexpr double kMillimetresPerMetre = 1000;
constexpr double kInchesPerFoot = 12;
constexpr double kSquareMetresPerAcre = 4047;  // as the tables of the zones count it
constexpr double kSquareMetresPerHectare = 10000;

}  // namespace velmora
