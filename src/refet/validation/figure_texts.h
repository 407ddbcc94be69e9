// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

namespace velmora {

struct FigureText {
    std::string_view name;  // of the file in figures/
    std::string_view text;
};

// The files in figures/, in the order of their names; made when the program is configured.
std::span<const FigureText> figureTexts();

}  // namespace velmora
