// SPDX-License-Identifier: MIT
// Numbers and their texts, always with a decimal point whatever the locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora {

// The shortest text that reads back as the same double ("0.5", "-6.5e-05", "1e+20").
std::string numberText(double value);
std::string singleText(float value);  // the shortest that reads back as the same single

// The number in `text` when the whole text (blanks around it aside) is one finite number.
std::optional<double> strictNumber(std::string_view text);

// The leading number of `text`, blanks skipped, and 0 when it starts with none: "2.5 m" is 2.5.
double lenientNumber(std::string_view text);

// Number formats made of digit places: "##.##" gives 1.58, ".5" for 0.5, "3." for 3 and "." for 0.
// `decimals` is the number of places behind the point; rounding is half away from zero.
std::string formatPlaces(double value, int decimals);

}  // namespace velmora
