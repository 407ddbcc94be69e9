// SPDX-License-Identifier: MIT
// A compared figure as cells of a table.
#pragma once

#include <array>
#include <string>

#include "refet/validation/validation.h"

namespace velmora {

constexpr std::array<const char*, 8> kFigureHeads = {
    "quantity", "inputs", "unit", "figure", "ours", "difference", "tolerance", "remark"};

// "met", "departs", "outside".
std::string verdictWord(Verdict verdict);

// Ours has one decimal more than the figure.
std::array<std::string, kFigureHeads.size()> figureCells(const Comparison& comparison);

// How many figures there are and how the comparison ended, of a group: "10 met, 1 departs".
std::string verdictCounts(const ComparedGroup& group);

}  // namespace velmora
