// SPDX-License-Identifier: MIT
// What can be wrong with a cell of reference ET though it has been computed as it should: values
// that physics does not allow, and cells that the stations do not bear out. Flags tell; they change
// no number.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "modelling/products.h"

namespace velmora {

// A cell of a grid of flags holds the sum of the bits of its flags: 1 of the first, 2 of the
// second, 4 ...
enum class QualityFlag : unsigned {
    negativeEt,
    dewPointAboveMean,
    dewPointAboveMaximum,
    maximumBelowMinimum,
    radiationAboveExtraterrestrial,
    radiationLow,
    windBeyondStations,
    elevationBeyondStations,
    farFromStations,
    dewPointEstimated,
    radiationEstimated,
    windEstimated,
    heatFluxTakenAsZero,
    trendNotSignificant,
};
constexpr std::size_t kQualityFlags = 14;

constexpr unsigned bitOf(QualityFlag flag) { return 1U << static_cast<unsigned>(flag); }

// "reference ET below 0", and the unit of its worst value: ET itself, how far a value is beyond
// its bound, or a share of the extraterrestrial radiation.
struct QualityText {
    std::string_view text;
    std::string_view unit;
};
const QualityText& textOf(QualityFlag flag);

// Radiation below that share of the extraterrestrial radiation is too low for a month.
constexpr double kLeastRadiationShare = 0.2;

// Metres; beyond them a monthly mean of a station says little of a cell.
constexpr double kFarFromStations = 50'000;

// "QA_Dec_2"
inline constexpr GridNaming kQualityGrids = {"QA_", true, true};

}  // namespace velmora
