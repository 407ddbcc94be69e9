// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

// A value per month (January first), or none.
struct MonthlySeries {
    std::string name;
    std::string color;
    std::array<std::optional<double>, 12> values;
};

// Lines over the months as an SVG drawing, with an axis of round numbers from 0 on. Months without
// a value interrupt a line.
std::string monthlyChart(const std::string& title, const std::string& unit,
                         const std::vector<MonthlySeries>& series);

// The names and colours of the lines, for all charts together.
std::string chartLegend(const std::vector<MonthlySeries>& series);

}  // namespace velmora
