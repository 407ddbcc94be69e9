// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <string>

#include "gis/numbers.h"
#include "gis/units.h"

namespace velmora {

// A number with so many decimals at most: "11.4", "12".
inline std::string roundedText(double value, double parts = 100) {
    return numberText(std::round(value * parts) / parts);
}

// "1234.5 acres"
inline std::string acresText(double squareMetres) {
    return roundedText(squareMetres / kSquareMetresPerAcre, 10) + " acres";
}

}  // namespace velmora
