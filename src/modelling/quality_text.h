// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "gis/quality_note.h"

namespace velmora {

// "41 %", "0.4 %", "3 cells".
std::string shareText(std::size_t cells, double share);

// "lowest -1.24 inches", "by up to 12.4 deg C"; "" for a flag of all cells.
std::string worstText(const QualityNote::Flag& flag);

// A flag in a few words: "41 %: reference ET below 0 (lowest -1.24 inches at column 43, row 13)".
std::string flagText(const QualityNote::Flag& flag);

// The line of a month: "RefET_Dec_2: 41 % of the cells: reference ET below 0; ...".
std::string qualityLine(const QualityNote& note, const std::vector<std::string>& parts);

}  // namespace velmora
